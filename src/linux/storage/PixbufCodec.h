#pragma once

#include "linux/storage/ImageCanvas.h"
#include "linux/storage/Jpeg.h"
#include "platform/Image.h"

namespace kestrin::gtk {

/// Reads whatever gdk-pixbuf reads, upright as the file's orientation tag says; plain JPEG quicker, with
/// libjpeg-turbo, which also writes it; draws with cairo. Thread: any.
class PixbufCodec final : public platform::ImageCodec {
  public:
    platform::Image decode(std::span<const std::uint8_t> bytes,
                           std::int64_t mostPixels = kMostPixels) const override;
    std::vector<std::uint8_t> encodeJpeg(const platform::Image& image, double quality) const override {
        return writeJpeg(image, quality);
    }
    platform::Image compose(const platform::Size& size, bool opaque, double scale,
                            std::span<const platform::ImageLayer> layers) const override {
        return composeImages(size, opaque, scale, layers);
    }
};

} // namespace kestrin::gtk
