#include "linux/toolkit/Texture.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace kestrin::gtk {

namespace {

std::uint8_t straight(std::uint32_t premultiplied, std::uint32_t alpha) {
    return std::uint8_t(std::min(255U, (premultiplied * 255 + alpha / 2) / alpha));
}

/// GDK hands out 32-bit words, alpha highest, colours premultiplied.
void toRgba(std::vector<std::uint8_t>& pixels) {
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, &pixels[i], 4);
        const std::uint32_t alpha = word >> 24;
        const auto channel = [&](int shift) {
            return alpha == 0 ? std::uint8_t(0) : straight((word >> shift) & 255, alpha);
        };
        pixels[i] = channel(16);
        pixels[i + 1] = channel(8);
        pixels[i + 2] = channel(0);
        pixels[i + 3] = std::uint8_t(alpha);
    }
}

} // namespace

GRef<GdkTexture> makeTexture(const platform::Image& image) {
    if (!image.isValid())
        return {};
    const auto destroy = [](gpointer owner) { delete static_cast<platform::Image*>(owner); };
    const auto pixels = image.pixels();
    const GData bytes(
        g_bytes_new_with_free_func(pixels.data(), pixels.size(), destroy, new platform::Image(image)));
    return GRef<GdkTexture>::adopt(gdk_memory_texture_new(image.pixelWidth(), image.pixelHeight(),
                                                          GDK_MEMORY_R8G8B8A8, bytes.get(),
                                                          gsize(image.pixelWidth()) * 4));
}

platform::Image readTexture(GdkTexture* texture) {
    const int width = gdk_texture_get_width(texture), height = gdk_texture_get_height(texture);
    std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * 4);
    gdk_texture_download(texture, pixels.data(), gsize(width) * 4);
    toRgba(pixels);
    return {width, height, std::move(pixels)};
}

} // namespace kestrin::gtk
