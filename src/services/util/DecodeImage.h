#pragma once

#include "platform/Platform.h"

#include <string>

namespace kestrin {

/// The picture in a file's bytes, shrunk to at most that many pixels; absent when they are none, or too large
/// a one. Thread: any.
inline platform::Image decodeImage(const std::string& bytes,
                                   std::int64_t mostPixels = platform::ImageCodec::kMostPixels) {
    return platform::platform().images().decode(
        {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, mostPixels);
}

} // namespace kestrin
