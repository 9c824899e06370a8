#include "linux/storage/PixbufCodec.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <string_view>

namespace kestrin::gtk {

namespace {

using PixbufRef = std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)>;
using LoaderRef = std::unique_ptr<GdkPixbufLoader, decltype(&g_object_unref)>;

bool isReasonable(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= platform::ImageCodec::kMostPixels / height;
}

/// The decoders make a picture of what there is of a file that was cut short; its end tells. A JPEG's own
/// comes after its last scan, that of a thumbnail before.
bool isCutShort(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\x89PNG"))
        return text.rfind("IEND") == text.npos;
    if (!text.starts_with("\xFF\xD8"))
        return false;
    const auto end = text.rfind("\xFF\xD9"), scan = text.rfind("\xFF\xDA");
    return end == text.npos || (scan != text.npos && end < scan);
}

/// A size of zero makes the loader give up, or draw next to nothing, before it allocates the pixels.
void refuseHugePicture(GdkPixbufLoader* loader, int width, int height, bool* isRefused) {
    *isRefused = !isReasonable(width, height);
    if (*isRefused)
        gdk_pixbuf_loader_set_size(loader, 0, 0);
}

PixbufRef readPixbuf(std::span<const std::uint8_t> bytes) {
    const LoaderRef loader(gdk_pixbuf_loader_new(), g_object_unref);
    bool isRefused = false;
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(refuseHugePicture), &isRefused);
    const bool written = gdk_pixbuf_loader_write(loader.get(), bytes.data(), bytes.size(), nullptr);
    const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
    GdkPixbuf* pixbuf =
        written && closed && !isRefused ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    return {pixbuf ? gdk_pixbuf_apply_embedded_orientation(pixbuf) : nullptr, g_object_unref};
}

/// GdkPixbuf has three or four channels and padded rows.
std::vector<std::uint8_t> tightRgba(const GdkPixbuf* pixbuf) {
    const int width = gdk_pixbuf_get_width(pixbuf);
    const int height = gdk_pixbuf_get_height(pixbuf);
    const int channels = gdk_pixbuf_get_n_channels(pixbuf);
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    const std::uint8_t* source = gdk_pixbuf_read_pixels(pixbuf);
    std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * 4);
    std::uint8_t* out = pixels.data();
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = source + std::ptrdiff_t(y) * stride;
        for (int x = 0; x < width; ++x, in += channels, out += 4) {
            out[0] = in[0];
            out[1] = in[1];
            out[2] = in[2];
            out[3] = channels == 4 ? in[3] : 255;
        }
    }
    return pixels;
}

platform::Image readImage(std::span<const std::uint8_t> bytes) {
    const PixbufRef pixbuf = bytes.empty() ? PixbufRef(nullptr, g_object_unref) : readPixbuf(bytes);
    const int width = pixbuf ? gdk_pixbuf_get_width(pixbuf.get()) : 0;
    const int height = pixbuf ? gdk_pixbuf_get_height(pixbuf.get()) : 0;
    return isReasonable(width, height) ? platform::Image(width, height, tightRgba(pixbuf.get()))
                                       : platform::Image();
}

} // namespace

platform::Image PixbufCodec::decode(std::span<const std::uint8_t> bytes, std::int64_t mostPixels) const {
    if (isCutShort(bytes))
        return {};
    if (const auto jpeg = readJpeg(bytes, mostPixels))
        return jpeg->shrunk(mostPixels);
    return readImage(bytes).shrunk(mostPixels);
}

} // namespace kestrin::gtk
