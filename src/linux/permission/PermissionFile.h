#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace kestrin::gtk {

/// What the person answered when an application asked for something, by the name of the thing: "camera",
/// "photos". Thread: any.
class PermissionFile {
  public:
    /// `permissions.ini` beside the application's documents folder.
    static PermissionFile ofApplication(const std::string& applicationId);
    explicit PermissionFile(std::filesystem::path file) : m_file(std::move(file)) {}

    /// None when there is no answer, or none that can be read.
    std::optional<bool> read(const std::string& name) const;
    /// Why it failed, or none; the former answers are still there then.
    std::optional<std::string> write(const std::string& name, bool allowed) const;
    /// The person will be asked again. Why it failed, or none, also when there was nothing to forget.
    std::optional<std::string> forget() const;

  private:
    const std::filesystem::path m_file;
};

} // namespace kestrin::gtk
