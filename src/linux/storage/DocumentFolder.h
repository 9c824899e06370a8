#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace kestrin::gtk {

/// Files by name in one folder. A name that could lead elsewhere is refused: no name needs to be trusted.
/// Thread: any.
class DocumentFolder {
  public:
    explicit DocumentFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    std::optional<std::string> read(const std::string& name) const;
    /// Written to the side, then renamed. False when it failed; the former file is still there then.
    bool write(const std::string& name, std::span<const std::uint8_t> bytes) const;

  private:
    const std::filesystem::path m_folder;
};

} // namespace kestrin::gtk
