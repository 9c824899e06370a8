#include "linux/toolkit/Texture.h"

#include "linux/storage/Argb32.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kestrin::gtk {

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
    fromArgb32(pixels);
    return {width, height, std::move(pixels)};
}

} // namespace kestrin::gtk
