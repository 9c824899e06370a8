#include "platform/Image.h"

#include <algorithm>
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

Image Image::cropped(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) const {
    const std::int64_t left = std::max(x, 0),
                       right = std::min<std::int64_t>(std::int64_t(x) + width, m_width);
    const std::int64_t top = std::max(y, 0),
                       bottom = std::min<std::int64_t>(std::int64_t(y) + height, m_height);
    if (right <= left || bottom <= top)
        return {};
    std::vector<std::uint8_t> part;
    part.reserve(std::size_t((right - left) * (bottom - top) * 4));
    for (std::int64_t row = top; row < bottom; ++row) {
        const auto line =
            pixels().subspan(std::size_t((row * m_width + left) * 4), std::size_t((right - left) * 4));
        part.insert(part.end(), line.begin(), line.end());
    }
    return {int(right - left), int(bottom - top), std::move(part)};
}

} // namespace kestrin::platform
