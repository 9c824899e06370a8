#include "platform/WebView.h"

#include "platform/Platform.h"

#include <utility>

namespace kestrin::platform {

WebView::WebView(const WebViewConfiguration& configuration)
    : WebView(platform().web().makeWebPeer(*this, configuration)) {}

WebView::WebView(std::unique_ptr<WebViewPeer> peer)
    : View(std::move(peer)), m_webPeer(static_cast<WebViewPeer&>(View::peer())) {}

void WebView::setScroll(const ScrollSettings& settings) {
    m_scroll = settings;
    m_webPeer.setScroll(settings);
}

void WebView::setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) {
    m_webPeer.setNavigationDelegate(std::move(delegate));
}

void WebView::setUiDelegate(std::weak_ptr<WebUiDelegate> delegate) {
    m_webPeer.setUiDelegate(std::move(delegate));
}

Insets WebView::safeAreaInsets() const { return platform().web().safeAreaInsets(); }

} // namespace kestrin::platform
