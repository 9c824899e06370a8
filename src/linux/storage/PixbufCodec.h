#pragma once

#include "platform/Image.h"

namespace kestrin::gtk {

/// Reads whatever gdk-pixbuf reads, upright as the file's orientation tag says; writes JPEG with
/// libjpeg-turbo. Thread: any.
class PixbufCodec final : public platform::ImageCodec {
  public:
    platform::Image decode(std::span<const std::uint8_t> bytes) const override;
    std::vector<std::uint8_t> encodeJpeg(const platform::Image& image, double quality) const override;
};

} // namespace kestrin::gtk
