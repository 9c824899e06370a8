#include "Png.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <vector>

namespace kestrin::session::test {

namespace {

std::uint8_t toByte(double value) { return std::uint8_t(std::clamp(value, 0.0, 255.0) + 0.5); }

} // namespace

bool writePng(const platform::PixelBuffer& picture, const std::string& file) {
    const platform::PixelPlane luma = picture.plane(0), chroma = picture.plane(1);
    std::vector<std::uint8_t> rgb;
    for (int y = 0; y < luma.height; ++y)
        for (int x = 0; x < luma.width; ++x) {
            const std::uint8_t* pair = chroma.data + y / 2 * chroma.stride + x / 2 * 2;
            const double Y = luma.data[y * luma.stride + x], cb = pair[0] - 128.0, cr = pair[1] - 128.0;
            rgb.insert(rgb.end(), {toByte(Y + 1.402 * cr), toByte(Y - 0.344136 * cb - 0.714136 * cr),
                                   toByte(Y + 1.772 * cb)});
        }
    GdkPixbuf* pixbuf = gdk_pixbuf_new_from_data(rgb.data(), GDK_COLORSPACE_RGB, FALSE, 8, luma.width,
                                                 luma.height, 3 * luma.width, nullptr, nullptr);
    const bool written = gdk_pixbuf_save(pixbuf, file.c_str(), "png", nullptr, nullptr);
    g_object_unref(pixbuf);
    return written;
}

} // namespace kestrin::session::test
