#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kestrin::platform {

/// The application's own files, the person's photo library, and what the device says of itself. Thread: any.
class Storage {
  public:
    virtual ~Storage() = default;
    /// The bytes of the main bundle's resource `name` with extension `type`.
    virtual std::optional<std::string> bundleResource(const std::string& name,
                                                      const std::string& type) const = 0;
    /// A text of the main bundle's information dictionary.
    virtual std::optional<std::string> information(const std::string& key) const = 0;
    /// The text in the person's language, as the application translates it; the text itself when it does not.
    virtual std::string localizedText(const std::string& text) const = 0;
    /// The bytes of a file in the application's documents folder, which is the person's own; none when it is
    /// not there or `name` leads elsewhere.
    virtual std::optional<std::string> readDocument(const std::string& name) const = 0;
    /// Puts a file in the place of the one of that name, which stays as it was when writing fails or is
    /// interrupted; false then, and when `name` leads out of the folder.
    virtual bool writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) = 0;
    /// Adds a picture (a JPEG file's bytes) to the person's photo library, as one of that moment. None when
    /// it is there, else why it is not; nothing of it is left then. Thread: worker.
    virtual std::optional<std::string> addPhoto(std::span<const std::uint8_t> jpeg,
                                                std::chrono::system_clock::time_point created) = 0;
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
