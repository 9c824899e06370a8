#pragma once

#include "linux/storage/ImageCanvas.h"
#include "platform/Image.h"

namespace kestrin::gtk {

/// Reads whatever gdk-pixbuf reads, upright as the file's orientation tag says; writes JPEG with
/// libjpeg-turbo; draws with cairo. Thread: any.
class PixbufCodec final : public platform::ImageCodec {
  public:
    platform::Image decode(std::span<const std::uint8_t> bytes) const override;
    std::vector<std::uint8_t> encodeJpeg(const platform::Image& image, double quality) const override;
    platform::Image compose(const platform::Size& size, bool opaque, double scale,
                            std::span<const platform::ImageLayer> layers) const override {
        return composeImages(size, opaque, scale, layers);
    }
};

} // namespace kestrin::gtk
