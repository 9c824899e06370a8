#include "linux/web/WebKitPeer.h"

#include "linux/web/NewWebView.h"

#include <utility>

namespace kestrin::gtk {

namespace {

platform::Color over(const platform::Color& top, const platform::Color& below) {
    const float rest = below.alpha * (1 - top.alpha), alpha = top.alpha + rest;
    const auto mix = [&](float a, float b) { return alpha > 0 ? (a * top.alpha + b * rest) / alpha : 0; };
    return {mix(top.red, below.red), mix(top.green, below.green), mix(top.blue, below.blue), alpha};
}

} // namespace

WebKitPeer::WebKitPeer(platform::View& view, const platform::WebViewConfiguration& configuration,
                       WebKitNetworkSession* session, WebKitWebView* related, const WebOptions& options,
                       const std::shared_ptr<platform::LogSink>& log)
    : WidgetPeer(&view), m_messages(configuration.scriptMessageHandlers),
      m_webView(newWebView(configuration, session, related, m_messages.manager())), m_trace(m_webView.get()),
      m_load(m_webView.get(), log), m_navigation(m_webView.get(), options.featureLevel, log),
      m_requests(m_webView.get()), m_allowsInspection(options.developerExtras) {
    box().setHiding(Hiding::transparent);
    const GdkRGBA clear{0, 0, 0, 0};
    webkit_web_view_set_background_color(m_webView.get(), &clear);
    box().setContent(GTK_WIDGET(m_webView.get()));
    paintBackground();
}

void WebKitPeer::evaluate(std::string_view script) {
    if (script.empty())
        return;
    m_scripts.count();
    // Without a callback the page's process is not asked to send the result back.
    webkit_web_view_evaluate_javascript(m_webView.get(), script.data(), static_cast<gssize>(script.size()),
                                        nullptr, nullptr, nullptr, nullptr, nullptr);
}

void WebKitPeer::setBackground(const platform::Color& color) {
    m_background = color;
    paintBackground();
}

void WebKitPeer::setOpaque(bool opaque) {
    m_isOpaque = opaque;
    paintBackground();
}

// Bouncing, insets and margins have no counterpart: WebKitGTK does not scroll past the ends of a page, and
// nothing covers a window's edges.
void WebKitPeer::setScroll(const platform::ScrollSettings& settings) {
    m_scroll = settings;
    paintBackground();
}

// The page itself is always transparent and the widget below it has the colours: they change at once, without
// the page's process.
void WebKitPeer::paintBackground() {
    const bool opaque = m_isOpaque || m_scroll.opaque;
    const platform::Color base = opaque ? platform::kWhite : platform::kClear;
    box().setBackground(over(m_scroll.background, over(m_background, base)));
}

void WebKitPeer::setNavigationDelegate(std::weak_ptr<platform::NavigationDelegate> delegate) {
    m_load.setDelegate(delegate);
    m_navigation.setDelegate(std::move(delegate));
}

void WebKitPeer::setUiDelegate(std::weak_ptr<platform::WebUiDelegate> delegate) {
    m_requests.setDelegate(std::move(delegate));
}

void WebKitPeer::setInspectable(bool inspectable) {
    const bool isOpen = inspectable && m_allowsInspection;
    WebKitWebInspector* const inspector = webkit_web_view_get_inspector(m_webView.get());
    if (!isOpen && webkit_web_inspector_get_web_view(inspector))
        webkit_web_inspector_close(inspector);
    webkit_settings_set_enable_developer_extras(webkit_web_view_get_settings(m_webView.get()), isOpen);
}

} // namespace kestrin::gtk
