#include "PaintCount.h"

#include "linux/drawing/RenderWidget.h"

#include <cstring>
#include <utility>

namespace kestrin::bench {

namespace {

GtkWidget* findByType(GtkWidget* root, const char* type) {
    if (std::strcmp(G_OBJECT_TYPE_NAME(root), type) == 0)
        return root;
    GtkWidget* found = nullptr;
    for (GtkWidget* child = gtk_widget_get_first_child(root); child && !found;
         child = gtk_widget_get_next_sibling(child))
        found = findByType(child, type);
    return found;
}

} // namespace

PaintCount::PaintCount(GtkWidget* window)
    : m_camera(findByType(window, "KestrinRenderWidget")),
      m_afterPaint(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(painted), this) {}

// The window's own renderer is not asked, which would forget the page's texture over it.
void PaintCount::painted(GdkFrameClock*, PaintCount* self) {
    const auto* widget = static_cast<gtk::RenderWidget*>(static_cast<void*>(self->m_camera));
    GdkTexture* texture = widget ? widget->state->texture.get() : nullptr;
    if (!texture)
        return;
    const auto width = std::size_t(gdk_texture_get_width(texture));
    self->m_pixels.resize(width * std::size_t(gdk_texture_get_height(texture)));
    gdk_texture_download(texture, reinterpret_cast<guchar*>(self->m_pixels.data()), width * sizeof(guint32));
    const guint32 pixel = self->m_pixels.front();
    self->m_pictures += pixel != std::exchange(self->m_lastPixel, pixel) ? 1 : 0;
}

} // namespace kestrin::bench
