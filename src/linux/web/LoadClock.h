#pragma once

#include "linux/toolkit/SignalHandler.h"

#include <webkit/webkit.h>

#include <functional>
#include <vector>

namespace kestrin::gtk {

/// Bounds the silence of a load: WebKit itself waits for ever. It watches until the page's own document is
/// there; what else the page loads may take its time. Thread: main.
class LoadClock {
  public:
    /// `expired` is called when nothing came for as long as was said.
    LoadClock(WebKitWebView* view, std::function<void()> expired);
    ~LoadClock() { pause(); }
    LoadClock(const LoadClock&) = delete;
    LoadClock& operator=(const LoadClock&) = delete;

    /// Watches the load that starts next, and its repetitions.
    void arm(double seconds);

  private:
    void onChanged(WebKitWebView* view, WebKitLoadEvent event);
    void watchDocument(WebKitWebResource* document);
    void noteProgress();
    void pause();
    void wait(double seconds);
    void check();
    void askForDocumentSize();
    void onDocumentSize(gsize size);

    const std::function<void()> m_expired;
    std::vector<SignalHandler> m_signals;
    GRef<WebKitWebResource> m_document; ///< while it is loading
    SignalHandler m_documentEnd;
    gsize m_documentSize = 0;
    GRef<GCancellable> m_asking;
    bool m_isArmed = false;
    double m_limit = 0, m_lastProgress = 0; ///< seconds
    guint m_source = 0;
};

} // namespace kestrin::gtk
