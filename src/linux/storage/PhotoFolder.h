#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace kestrin::gtk {

/// A folder of photos, one JPEG file each, named by its date. Thread: any.
class PhotoFolder {
  public:
    /// "Kestrin" in the person's folder for pictures.
    static PhotoFolder ofPerson();
    /// Made with the first photo.
    explicit PhotoFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    /// Writes the photo with its date to the side, then renames it; no other file is replaced. None, or why
    /// it failed, and then no file is left.
    std::optional<std::string> add(std::span<const std::uint8_t> jpeg,
                                   std::chrono::system_clock::time_point created) const;

  private:
    const std::filesystem::path m_folder;
};

} // namespace kestrin::gtk
