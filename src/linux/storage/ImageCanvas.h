#pragma once

#include "platform/Image.h"

namespace kestrin::gtk {

/// `ImageCodec::compose`, with cairo. Thread: any.
platform::Image composeImages(const platform::Size& size, bool opaque, double scale,
                              std::span<const platform::ImageLayer> layers);

} // namespace kestrin::gtk
