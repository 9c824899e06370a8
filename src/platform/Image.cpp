#include "platform/Image.h"

#include <utility>

namespace kestrin::platform {

Image::Image(int pixelWidth, int pixelHeight, std::vector<std::uint8_t> pixels, double scale) {
    const bool fits = pixelWidth > 0 && pixelHeight > 0 && scale > 0 &&
                      pixels.size() == std::size_t(pixelWidth) * std::size_t(pixelHeight) * 4;
    if (!fits)
        return;
    m_pixels = std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels));
    m_width = pixelWidth;
    m_height = pixelHeight;
    m_scale = scale;
}

std::span<const std::uint8_t> Image::pixels() const {
    return m_pixels ? std::span(*m_pixels) : std::span<const std::uint8_t>();
}

} // namespace kestrin::platform
