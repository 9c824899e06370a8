#pragma once

#include "platform/Image.h"

#include <cstdint>

namespace kestrin {

/// The image with at most that many pixels, fields of whole pixels averaged; itself when it has no more. Its
/// size in points stays but for the rest that fills no field. Thread: any.
platform::Image shrinkImage(const platform::Image& image, std::int64_t mostPixels);

} // namespace kestrin
