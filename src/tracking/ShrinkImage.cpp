#include "tracking/ShrinkImage.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kestrin {

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

platform::Image shrinkImage(const platform::Image& image, std::int64_t mostPixels) {
    const auto width = std::size_t(image.pixelWidth());
    const auto height = std::size_t(image.pixelHeight());
    const double excess = double(width) * double(height) / double(mostPixels);
    if (excess <= 1)
        return image;
    const auto field = std::min(std::size_t(std::ceil(std::sqrt(excess))), std::min(width, height));
    const std::size_t columns = width / field;
    const std::size_t rows = height / field;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(columns * rows * kChannels);
    std::vector<std::uint32_t> sums(columns * kChannels);
    for (std::size_t row = 0; row < rows * field; ++row) {
        addRow(image.pixels().data() + row * width * kChannels, field, sums);
        if ((row + 1) % field != 0)
            continue;
        for (std::uint32_t& sum : sums)
            pixels.push_back(std::uint8_t(std::exchange(sum, 0) / (field * field)));
    }
    return {int(columns), int(rows), std::move(pixels), image.scale() / double(field)};
}

} // namespace kestrin
