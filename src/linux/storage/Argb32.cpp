#include "linux/storage/Argb32.h"

#include <algorithm>
#include <cstring>

namespace kestrin::gtk {

namespace {

std::uint32_t premultiplied(std::uint32_t straight, std::uint32_t alpha) {
    return (straight * alpha + 127) / 255;
}

std::uint8_t straight(std::uint32_t premultiplied, std::uint32_t alpha) {
    return std::uint8_t(std::min(255U, (premultiplied * 255 + alpha / 2) / alpha));
}

} // namespace

std::vector<std::uint32_t> toArgb32(const platform::Image& image) {
    const auto pixels = image.pixels();
    std::vector<std::uint32_t> words(pixels.size() / 4);
    const std::uint8_t* in = pixels.data();
    for (std::uint32_t& word : words) {
        const std::uint32_t alpha = in[3];
        const auto channel = [&](int i) { return alpha == 255 ? in[i] : premultiplied(in[i], alpha); };
        word = alpha << 24 | channel(0) << 16 | channel(1) << 8 | channel(2);
        in += 4;
    }
    return words;
}

void fromArgb32(std::vector<std::uint8_t>& pixels) {
    for (std::size_t i = 0; i + 4 <= pixels.size(); i += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, &pixels[i], 4);
        const std::uint32_t alpha = word >> 24;
        const auto channel = [&](int shift) {
            const std::uint32_t value = word >> shift & 255;
            return alpha == 255 ? std::uint8_t(value) : alpha == 0 ? std::uint8_t(0) : straight(value, alpha);
        };
        pixels[i] = channel(16);
        pixels[i + 1] = channel(8);
        pixels[i + 2] = channel(0);
        pixels[i + 3] = std::uint8_t(alpha);
    }
}

} // namespace kestrin::gtk
