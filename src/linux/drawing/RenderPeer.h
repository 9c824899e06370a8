#pragma once

#include "linux/drawing/DrawingThread.h"
#include "linux/drawing/RenderWidget.h"
#include "linux/toolkit/SignalHandler.h"
#include "linux/toolkit/WidgetPeer.h"

namespace kestrin::gtk {

/// A render view's widget and drawing thread. The thread and its GL contexts are made when the view is first
/// shown; it draws while the widget is mapped and its window not minimised. Thread: main, unless said
/// otherwise.
class RenderPeer final : public WidgetPeer<platform::RenderViewPeer>, private Reconciled {
  public:
    RenderPeer(platform::View& view, std::shared_ptr<platform::LogSink> log);
    ~RenderPeer() override;

    void setDelegate(std::weak_ptr<platform::RenderViewDelegate> delegate) override;
    void setSettings(const platform::RenderViewSettings& settings) override;
    /// Thread: drawing.
    bool hasRenderPass() const override { return m_thread && m_thread->hasPass(); }
    platform::Image newestPicture() override;

    /// Null before the view was shown. Thread: drawing.
    DrawingThread* drawingThread() const { return m_thread.get(); }

  private:
    static void mapped(gpointer, RenderPeer* self);
    static void unmapped(gpointer, RenderPeer* self);
    static void unrealized(gpointer, RenderPeer* self);
    static void changed(gpointer, gpointer, RenderPeer* self);
    void showNewest();
    void startThread();
    void updateShown();
    void updateSize();
    void report() override;

    platform::View& m_view;
    const std::shared_ptr<platform::LogSink> m_log;
    const GRef<RenderWidget> m_widget;
    std::weak_ptr<platform::RenderViewDelegate> m_delegate;
    platform::RenderViewSettings m_settings;
    platform::Size m_pixels;
    MainWake m_published;
    std::unique_ptr<DrawingThread> m_thread;
    std::shared_ptr<FrameRing> m_ring;
    bool m_hasFailed = false;
    SignalHandler m_map, m_unmap, m_unrealize, m_scale, m_windowState;
};

} // namespace kestrin::gtk
