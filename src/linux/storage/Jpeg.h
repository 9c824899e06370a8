#pragma once

#include "platform/Image.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestrin::gtk {

/// The picture in a JPEG file's bytes; one of more than `mostPixels` comes shrunk by up to eight, so that it
/// may still have more. Absent when it has more than `ImageCodec::kMostPixels` or nothing in it. None when
/// this is not for it to read: no JPEG, a damaged one, one with colours for a press, or with Exif data, which
/// may say that it has to be turned. Thread: any.
std::optional<platform::Image> readJpeg(std::span<const std::uint8_t> bytes, std::int64_t mostPixels);

/// See `ImageCodec::encodeJpeg`. Thread: any.
std::vector<std::uint8_t> writeJpeg(const platform::Image& image, double quality);

} // namespace kestrin::gtk
