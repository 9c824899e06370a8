#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kestrin::platform {

/// The application's own files, and what the device says of itself. Thread: any.
class Storage {
  public:
    virtual ~Storage() = default;
    /// The bytes of the main bundle's resource `name` with extension `type`.
    virtual std::optional<std::string> bundleResource(const std::string& name,
                                                      const std::string& type) const = 0;
    /// A text of the main bundle's information dictionary.
    virtual std::optional<std::string> information(const std::string& key) const = 0;
    /// A per-user folder; it exists.
    virtual std::filesystem::path documentsDirectory() const = 0;
};

struct Device {
    std::string name;          ///< the host's name
    std::string systemName;    ///< "Linux"
    std::string systemVersion; ///< as shown to the page
    std::string model;         ///< empty when unknown
    std::string localizedModel;
    std::string identifierForVendor; ///< UUID text, upper case
};

} // namespace kestrin::platform
