#include "linux/storage/ImageCanvas.h"

#include "linux/storage/Argb32.h"

#include <cairo.h>

#include <cmath>
#include <memory>
#include <utility>

namespace kestrin::gtk {

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

constexpr double kMostPixels = 64e6;
constexpr double kLongestSide = 32767; // cairo's
constexpr int kBytesPerPixel = 4;

Surface surfaceOver(void* pixels, int width, int height) {
    return {cairo_image_surface_create_for_data(static_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32,
                                                width, height, width * kBytesPerPixel),
            cairo_surface_destroy};
}

void draw(cairo_t* canvas, const platform::ImageLayer& layer) {
    const platform::Image& image = layer.image;
    const platform::Rect& rect = layer.rect;
    const auto& t = layer.transform;
    // One that shows nothing would spoil the canvas for those that follow.
    const bool isVisible =
        image.isValid() && rect.size.width > 0 && rect.size.height > 0 && std::abs(t.a * t.d - t.b * t.c) > 0;
    if (!isVisible)
        return;
    auto pixels = toArgb32(image);
    const Surface source = surfaceOver(pixels.data(), image.pixelWidth(), image.pixelHeight());
    const cairo_matrix_t transform{t.a, t.b, t.c, t.d, t.tx, t.ty};
    cairo_save(canvas);
    cairo_transform(canvas, &transform);
    cairo_rectangle(canvas, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    cairo_clip(canvas);
    cairo_translate(canvas, rect.origin.x, rect.origin.y);
    cairo_scale(canvas, rect.size.width / image.pixelWidth(), rect.size.height / image.pixelHeight());
    cairo_set_source_surface(canvas, source.get(), 0, 0);
    // Without this the edges of a scaled picture fade into what is beside it.
    cairo_pattern_set_extend(cairo_get_source(canvas), CAIRO_EXTEND_PAD);
    cairo_paint(canvas);
    cairo_restore(canvas);
}

} // namespace

platform::Image composeImages(const platform::Size& size, bool opaque, double scale,
                              std::span<const platform::ImageLayer> layers) {
    const double width = std::round(size.width * scale);
    const double height = std::round(size.height * scale);
    const bool isReasonable = width >= 1 && height >= 1 && width <= kLongestSide && height <= kLongestSide &&
                              width * height <= kMostPixels;
    if (!isReasonable)
        return {};
    std::vector<std::uint8_t> pixels(std::size_t(width) * std::size_t(height) * kBytesPerPixel);
    {
        const Surface surface = surfaceOver(pixels.data(), int(width), int(height));
        const Context canvas(cairo_create(surface.get()), cairo_destroy);
        if (opaque) {
            cairo_set_source_rgb(canvas.get(), 0, 0, 0);
            cairo_paint(canvas.get());
        }
        cairo_scale(canvas.get(), scale, scale);
        for (const auto& layer : layers)
            draw(canvas.get(), layer);
        cairo_surface_flush(surface.get());
    }
    fromArgb32(pixels);
    return {int(width), int(height), std::move(pixels), scale};
}

} // namespace kestrin::gtk
