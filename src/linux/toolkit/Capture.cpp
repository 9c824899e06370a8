#include "linux/toolkit/Capture.h"

#include "linux/toolkit/Texture.h"

#include <utility>

namespace kestrin::gtk {

namespace {

using Node = GOwned<GskRenderNode, gsk_render_node_unref>;

constexpr double kRetryPeriod = 0.02; // seconds
constexpr int kMostTries = 150;

Node paintedNode(GtkWidget* widget, double scale) {
    const auto paintable = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(widget));
    GtkSnapshot* snapshot = gtk_snapshot_new();
    gtk_snapshot_scale(snapshot, float(scale), float(scale));
    gdk_paintable_snapshot(paintable.get(), GDK_SNAPSHOT(snapshot), gtk_widget_get_width(widget),
                           gtk_widget_get_height(widget));
    return Node(gtk_snapshot_free_to_node(snapshot));
}

void tryCapture(const GRef<GtkWidget>& widget, platform::Dispatch& dispatch, int triesLeft,
                std::function<void(const platform::Image&)> done) {
    const platform::Image image = capture(widget.get());
    if (image.isValid() || triesLeft == 0) {
        done(image);
        return;
    }
    gtk_widget_queue_draw(widget.get());
    dispatch.mainAfter(kRetryPeriod, [widget, &dispatch, triesLeft, done = std::move(done)] {
        tryCapture(widget, dispatch, triesLeft - 1, done);
    });
}

} // namespace

platform::Image capture(GtkWidget* widget) {
    GtkNative* native = gtk_widget_get_native(widget);
    GskRenderer* renderer = native ? gtk_native_get_renderer(native) : nullptr;
    const int scale = gtk_widget_get_scale_factor(widget);
    const Node node = renderer && gtk_widget_get_mapped(widget) ? paintedNode(widget, scale) : nullptr;
    if (!node)
        return {};
    const graphene_rect_t viewport = GRAPHENE_RECT_INIT(0, 0, float(gtk_widget_get_width(widget) * scale),
                                                        float(gtk_widget_get_height(widget) * scale));
    const auto texture =
        GRef<GdkTexture>::adopt(gsk_renderer_render_texture(renderer, node.get(), &viewport));
    return readTexture(texture.get());
}

void captureWhenPainted(GtkWidget* widget, platform::Dispatch& dispatch,
                        std::function<void(const platform::Image&)> done) {
    tryCapture(GRef<GtkWidget>::ref(widget), dispatch, kMostTries, std::move(done));
}

std::string writePng(const platform::Image& image, const std::filesystem::path& file) {
    const auto texture = makeTexture(image);
    if (!texture)
        return "there is no picture";
    const GData bytes(gdk_texture_save_to_png_bytes(texture.get()));
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    GFailure failure;
    const bool written = g_file_set_contents(file.c_str(), data, gssize(size), failure.out());
    return written ? "" : failure.text();
}

} // namespace kestrin::gtk
