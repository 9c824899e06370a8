#include "linux/drawing/RenderPeer.h"

#include "linux/toolkit/Texture.h"

#include <utility>

namespace kestrin::gtk {

namespace {

/// The surface of the widget's window; null when it has none or is no window of the desktop.
GdkToplevel* toplevelOf(GtkWidget* widget) {
    GtkNative* native = gtk_widget_get_native(widget);
    GdkSurface* surface = native ? gtk_native_get_surface(native) : nullptr;
    return surface && GDK_IS_TOPLEVEL(surface) ? GDK_TOPLEVEL(surface) : nullptr;
}

} // namespace

RenderPeer::RenderPeer(platform::View& view, std::shared_ptr<platform::LogSink> log)
    : WidgetPeer(&view), m_view(view), m_log(std::move(log)),
      m_widget(GRef<RenderWidget>::refSink(newRenderWidget())), m_published([this] { showNewest(); }) {
    GtkWidget* native = &m_widget.get()->parentInstance;
    m_widget.get()->state->allocated = [this] { updateSize(); };
    m_map = SignalHandler(native, "map", G_CALLBACK(mapped), this);
    m_unmap = SignalHandler(native, "unmap", G_CALLBACK(unmapped), this);
    m_unrealize = SignalHandler(native, "unrealize", G_CALLBACK(unrealized), this);
    m_scale = SignalHandler(native, "notify::scale-factor", G_CALLBACK(changed), this);
    box().setContent(native);
}

RenderPeer::~RenderPeer() {
    m_widget.get()->state->allocated = nullptr;
    setTexture(*m_widget.get(), {});
}

void RenderPeer::showNewest() {
    if (auto texture = m_ring->takeNewest())
        setTexture(*m_widget.get(), std::move(texture));
}

platform::Image RenderPeer::newestPicture() {
    if (m_ring)
        showNewest(); // it may have been published since the last turn of the main loop
    GdkTexture* const texture = m_widget.get()->state->texture.get();
    return texture ? readTexture(texture) : platform::Image();
}

void RenderPeer::setDelegate(std::weak_ptr<platform::RenderViewDelegate> delegate) {
    m_delegate = std::move(delegate);
    if (m_thread)
        m_thread->setDelegate(m_delegate);
}

void RenderPeer::setSettings(const platform::RenderViewSettings& settings) {
    m_settings = settings;
    if (m_thread)
        m_thread->setFramesPerSecond(m_settings.preferredFramesPerSecond);
}

void RenderPeer::mapped(gpointer, RenderPeer* self) {
    if (GdkToplevel* toplevel = toplevelOf(self->widget()))
        self->m_windowState = SignalHandler(toplevel, "notify::state", G_CALLBACK(changed), self);
    self->startThread();
    self->updateShown();
}

void RenderPeer::unmapped(gpointer, RenderPeer* self) {
    self->m_windowState.disconnect();
    self->updateShown();
}

// Whoever takes the view out of its window to end everything must not find the drawing thread still holding
// on to a part of it. That takes one frame at most.
void RenderPeer::unrealized(gpointer, RenderPeer* self) {
    if (self->m_thread)
        self->m_thread->stop();
}

void RenderPeer::changed(gpointer, gpointer, RenderPeer* self) {
    self->updateShown();
    self->updateSize();
}

void RenderPeer::startThread() {
    if (m_thread || m_hasFailed)
        return;
    m_ring = FrameRing::make(*m_log);
    m_hasFailed = !m_ring;
    if (m_hasFailed)
        return;
    m_thread = std::make_unique<DrawingThread>(m_ring, m_view.weak_from_this(), m_published, m_log);
    m_thread->setDelegate(m_delegate);
    m_thread->setFramesPerSecond(m_settings.preferredFramesPerSecond);
    m_thread->setSize(m_pixels);
}

void RenderPeer::updateShown() {
    if (!m_thread)
        return;
    GtkWidget* native = &m_widget.get()->parentInstance;
    GdkToplevel* toplevel = toplevelOf(native);
    const bool minimised = toplevel && (gdk_toplevel_get_state(toplevel) & GDK_TOPLEVEL_STATE_MINIMIZED);
    m_thread->setShown(gtk_widget_get_mapped(native) && !minimised);
}

void RenderPeer::updateSize() {
    GtkWidget* native = &m_widget.get()->parentInstance;
    const double scale = gtk_widget_get_scale_factor(native);
    const platform::Size pixels{gtk_widget_get_width(native) * scale, gtk_widget_get_height(native) * scale};
    if (pixels == m_pixels)
        return;
    m_pixels = pixels;
    if (m_thread)
        m_thread->setSize(pixels);
    reconcileSoon();
}

void RenderPeer::report() {
    const auto view = m_view.weak_from_this().lock();
    const auto delegate = m_delegate.lock();
    if (view && delegate)
        delegate->drawableSizeWillChange(static_cast<platform::RenderView&>(*view), m_pixels);
}

} // namespace kestrin::gtk
