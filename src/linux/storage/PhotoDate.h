#pragma once

#include "linux/toolkit/GRef.h"

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// When a photo was made, in the person's time zone. Thread: any.
class PhotoDate {
  public:
    explicit PhotoDate(std::chrono::system_clock::time_point moment);

    /// As a part of a file's name that sorts by date: "2026-03-09 14.05.59".
    std::string fileName() const { return text("%Y-%m-%d %H.%M.%S"); }
    /// The JPEG file's bytes with the date in its EXIF block, which they must not have yet.
    std::vector<std::uint8_t> writtenInto(std::span<const std::uint8_t> jpeg) const;

  private:
    std::string text(const char* pattern) const;
    std::vector<std::uint8_t> exifBlock() const;

    const GOwned<GDateTime, g_date_time_unref> m_moment;
};

} // namespace kestrin::gtk
