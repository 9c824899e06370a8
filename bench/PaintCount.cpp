#include "PaintCount.h"

#include "linux/drawing/RenderWidget.h"
#include "linux/toolkit/GRef.h"

#include <ctime>

#include <cstring>
#include <utility>

namespace kestrin::bench {

namespace {

constexpr const char* kSeen = "kestrin-bench-seen";

GtkWidget* findByType(GtkWidget* root, const char* type) {
    if (std::strcmp(G_OBJECT_TYPE_NAME(root), type) == 0)
        return root;
    GtkWidget* found = nullptr;
    for (GtkWidget* child = gtk_widget_get_first_child(root); child && !found;
         child = gtk_widget_get_next_sibling(child))
        found = findByType(child, type);
    return found;
}

/// The texture's first pixel, through the window's own renderer.
guint32 pixelOf(GskRenderer* renderer, GdkTexture* texture) {
    const graphene_rect_t whole = GRAPHENE_RECT_INIT(0, 0, float(gdk_texture_get_width(texture)),
                                                     float(gdk_texture_get_height(texture)));
    const graphene_rect_t corner = GRAPHENE_RECT_INIT(0, 0, 1, 1);
    const gtk::GOwned<GskRenderNode, gsk_render_node_unref> node(gsk_texture_node_new(texture, &whole));
    const auto seen =
        gtk::GRef<GdkTexture>::adopt(gsk_renderer_render_texture(renderer, node.get(), &corner));
    guint32 pixel = 0;
    gdk_texture_download(seen.get(), reinterpret_cast<guchar*>(&pixel), sizeof pixel);
    return pixel;
}

} // namespace

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

PaintCount::PaintCount(GtkWidget* window)
    : m_camera(findByType(window, "KestrinRenderWidget")),
      m_renderer(gtk_native_get_renderer(GTK_NATIVE(window))),
      m_afterPaint(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(painted), this) {}

void PaintCount::painted(GdkFrameClock*, PaintCount* self) {
    const double begin = threadSeconds();
    self->look();
    self->m_ownSeconds += threadSeconds() - begin;
}

void PaintCount::look() {
    const auto* widget = static_cast<gtk::RenderWidget*>(static_cast<void*>(m_camera));
    GdkTexture* texture = widget ? widget->state->texture.get() : nullptr;
    // Marked instead of kept: a texture that is held keeps its place in the ring.
    if (!texture || g_object_get_data(G_OBJECT(texture), kSeen))
        return;
    g_object_set_data(G_OBJECT(texture), kSeen, this);
    const guint32 pixel = pixelOf(m_renderer, texture);
    m_pictures += pixel != std::exchange(m_lastPixel, pixel) ? 1 : 0;
}

} // namespace kestrin::bench
