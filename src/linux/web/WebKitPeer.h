#pragma once

#include "linux/toolkit/RateMeter.h"
#include "linux/toolkit/WidgetPeer.h"
#include "linux/web/LoadTrace.h"
#include "linux/web/Navigation.h"
#include "linux/web/PageLoad.h"
#include "linux/web/PageRequests.h"
#include "linux/web/ScriptMessages.h"
#include "linux/web/WebOptions.h"
#include "platform/Log.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <memory>

namespace kestrin::gtk {

/// A WebKitGTK web view behind the seam. A hidden one stays mapped and only becomes transparent, as an
/// unmapped page no longer gets animation frames. Thread: main.
class WebKitPeer final : public WidgetPeer<platform::WebViewPeer> {
  public:
    /// `session` and `related`: see newWebView.
    WebKitPeer(platform::View& view, const platform::WebViewConfiguration& configuration,
               WebKitNetworkSession* session, WebKitWebView* related, const WebOptions& options,
               const std::shared_ptr<platform::LogSink>& log);

    void load(const platform::UrlRequest& request) override { m_load.start(request); }
    void evaluate(std::string_view script) override;
    void setBackground(const platform::Color& color) override;
    void setOpaque(bool opaque) override;
    void setScroll(const platform::ScrollSettings& settings) override;
    void setNavigationDelegate(std::weak_ptr<platform::NavigationDelegate> delegate) override;
    void setUiDelegate(std::weak_ptr<platform::WebUiDelegate> delegate) override;
    /// In the page's context menu; only where the options allow it.
    void setInspectable(bool inspectable) override;

    WebKitWebView* webView() const { return m_webView.get(); }

  private:
    void paintBackground();

    ScriptMessages m_messages;
    const GRef<WebKitWebView> m_webView;
    const LoadTrace m_trace;
    PageLoad m_load;
    Navigation m_navigation;
    PageRequests m_requests;
    const bool m_allowsInspection;
    platform::Color m_background;
    RateMeter m_scripts{"scripts to the page"};
    bool m_isOpaque = true;
    platform::ScrollSettings m_scroll;
};

} // namespace kestrin::gtk
