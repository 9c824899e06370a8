#include "platform/Image.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrin::platform {

namespace {

constexpr std::size_t kChannels = 4;

/// Adds each pixel of a row to the sums of the field it lies in.
void addRow(const std::uint8_t* row, std::size_t field, std::vector<std::uint32_t>& sums) {
    for (std::size_t out = 0; out < sums.size(); out += kChannels)
        for (std::size_t i = 0; i < field; ++i, row += kChannels)
            for (std::size_t channel = 0; channel < kChannels; ++channel)
                sums[out + channel] += row[channel];
}

} // namespace

Image::Image(int pixelWidth, int pixelHeight, std::vector<std::uint8_t> pixels, double scale)
    : Image(pixelWidth, pixelHeight, std::move(pixels), Size{pixelWidth / scale, pixelHeight / scale}) {}

Image::Image(int pixelWidth, int pixelHeight, std::vector<std::uint8_t> pixels, const Size& size) {
    const bool fits = pixelWidth > 0 && pixelHeight > 0 && size.width > 0 && size.height > 0 &&
                      std::isfinite(size.width) && std::isfinite(size.height) &&
                      pixels.size() == std::size_t(pixelWidth) * std::size_t(pixelHeight) * kChannels;
    if (!fits)
        return;
    m_pixels = std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels));
    m_width = pixelWidth;
    m_height = pixelHeight;
    m_size = size;
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

Image Image::shrunk(std::int64_t mostPixels) const {
    const auto width = std::size_t(m_width);
    const auto height = std::size_t(m_height);
    const double excess = double(width) * double(height) / double(mostPixels);
    if (excess <= 1)
        return *this;
    const auto field = std::min(std::size_t(std::ceil(std::sqrt(excess))), std::min(width, height));
    const std::size_t columns = width / field;
    const std::size_t rows = height / field;
    std::vector<std::uint8_t> averages;
    averages.reserve(columns * rows * kChannels);
    std::vector<std::uint32_t> sums(columns * kChannels);
    for (std::size_t row = 0; row < rows * field; ++row) {
        addRow(pixels().data() + row * width * kChannels, field, sums);
        if ((row + 1) % field != 0)
            continue;
        for (std::uint32_t& sum : sums)
            averages.push_back(std::uint8_t(std::exchange(sum, 0) / (field * field)));
    }
    return {int(columns), int(rows), std::move(averages), m_size};
}

} // namespace kestrin::platform
