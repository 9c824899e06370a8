#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <memory>
#include <vector>

namespace kestrin::gtk {

/// Answers what a page wants from the application around it. Nothing that a page does opens a dialog. Thread:
/// main.
class PageRequests {
  public:
    explicit PageRequests(WebKitWebView* view);

    void setDelegate(std::weak_ptr<platform::WebUiDelegate> delegate) { m_delegate = std::move(delegate); }

  private:
    template <class Callback>
    void answer(WebKitWebView* view, const char* signal, Callback callback);
    void keepFileRequest(WebKitFileChooserRequest* request);

    std::weak_ptr<platform::WebUiDelegate> m_delegate;
    /// A request that is let go counts as cancelled.
    std::vector<GRef<WebKitFileChooserRequest>> m_pendingFiles;
    std::vector<SignalHandler> m_signals;
};

} // namespace kestrin::gtk
