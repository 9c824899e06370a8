#pragma once

#include "platform/Image.h"

namespace kestrin::test {

/// Pictures as "width height " and then the raw pixels; everything else is no picture.
class FakeImageCodec : public platform::ImageCodec {
  public:
    platform::Image decode(std::span<const std::uint8_t> bytes,
                           std::int64_t mostPixels = kMostPixels) const override;
    /// The quality does not show.
    std::vector<std::uint8_t> encodeJpeg(const platform::Image& image, double quality) const override;
    /// Takes the nearest pixel.
    platform::Image compose(const platform::Size& size, bool opaque, double scale,
                            std::span<const platform::ImageLayer> layers) const override;
};

/// A picture of one colour.
platform::Image makeImage(int width, int height, std::uint8_t level = 128);

} // namespace kestrin::test
