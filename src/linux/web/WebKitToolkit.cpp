#include "linux/web/WebKitToolkit.h"

#include "linux/web/Sandbox.h"
#include "linux/web/WebKitPeer.h"

#include <utility>

namespace kestrin::gtk {

namespace {

GRef<WebKitNetworkSession> makeSession(const WebOptions& options) {
    if (options.dataFolder.empty() && options.cacheFolder.empty())
        return GRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
    return GRef<WebKitNetworkSession>::adopt(
        webkit_network_session_new(options.dataFolder.c_str(), options.cacheFolder.c_str()));
}

/// A view whose process starts at once: that takes longer than all else on the way to a page. An empty page
/// gets a process only when something is to be run in it.
GRef<WebKitWebView> makeWarmView(WebKitNetworkSession* session) {
    auto view = GRef<WebKitWebView>::refSink(
        WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr)));
    webkit_web_view_evaluate_javascript(view.get(), "0", -1, nullptr, nullptr, nullptr, nullptr, nullptr);
    return view;
}

/// A page has no business in the downloads folder.
void refuseDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
}

} // namespace

WebKitToolkit::WebKitToolkit(std::shared_ptr<platform::LogSink> log, WebOptions options)
    : m_log(std::move(log)), m_options(std::move(options)), m_session(makeSession(m_options)),
      m_downloads(m_session.get(), "download-started", G_CALLBACK(refuseDownload), nullptr) {
    checkSandbox(m_log);
    m_warm = makeWarmView(m_session.get());
}

std::unique_ptr<platform::WebViewPeer>
WebKitToolkit::makeWebPeer(platform::View& view, const platform::WebViewConfiguration& configuration) {
    const auto warm = std::exchange(m_warm, {});
    return std::make_unique<WebKitPeer>(view, configuration, m_session.get(), warm.get(), m_options, m_log);
}

void WebKitToolkit::clearCache() {
    webkit_website_data_manager_clear(webkit_network_session_get_website_data_manager(m_session.get()),
                                      kCaches, 0, nullptr, nullptr, nullptr);
}

} // namespace kestrin::gtk
