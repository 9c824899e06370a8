#include "linux/web/PageLoad.h"

#include <string>
#include <utility>

namespace kestrin::gtk {

PageLoad::PageLoad(WebKitWebView* view, std::shared_ptr<platform::LogSink> log)
    : m_view(view), m_log(std::move(log)), m_clock(view, [this] { expired(); }),
      m_trust(ServerTrust::make(
          view, [view](const std::string& url) { webkit_web_view_load_uri(view, url.c_str()); })),
      m_failed(view, "load-failed",
               G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char* url, const GError* error,
                              PageLoad* self) -> gboolean {
                   self->reportFailure(url, *error);
                   return true; // no error page over the camera picture
               }),
               this) {}

PageLoad::~PageLoad() { g_cancellable_cancel(m_clearing.get()); }

void PageLoad::start(const platform::UrlRequest& request) {
    m_request = request;
    m_trust->giveUp();
    g_cancellable_cancel(m_clearing.get());
    if (request.ignoresLocalCache)
        clearCaches();
    else
        load();
}

// WebKitGTK offers no request that goes past the cache: headers do not, and the cache model is one for the
// whole process. The session is Kestrin's own, so forgetting its caches does it.
void PageLoad::clearCaches() {
    m_clearing = GRef<GCancellable>::adopt(g_cancellable_new());
    const auto cleared = [](GObject* manager, GAsyncResult* result, gpointer self) {
        GFailure failure;
        webkit_website_data_manager_clear_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, failure.out());
        // A cancelled one may come after this was destroyed.
        if (!g_error_matches(failure.error(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
            static_cast<PageLoad*>(self)->load();
    };
    WebKitNetworkSession* session = webkit_web_view_get_network_session(m_view);
    webkit_website_data_manager_clear(webkit_network_session_get_website_data_manager(session), kCaches, 0,
                                      m_clearing.get(), cleared, this);
}

void PageLoad::load() {
    m_clock.arm(m_request.timeout);
    webkit_web_view_load_uri(m_view, m_request.url.c_str());
}

void PageLoad::expired() {
    m_log->write("Kestrin - WebKitPeer - The page's server is silent, loading is given up: " + m_request.url);
    webkit_web_view_stop_loading(m_view);
}

// The network library may hand a connection on to this load whose earlier load was refused and cancelled, and
// fail it with that.
void PageLoad::reportFailure(const char* url, const GError& error) {
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED) && m_trust->retry(url))
        return;
    if (!g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED))
        m_log->write("Kestrin - WebKitPeer - The page does not load: " + std::string(url) + ": " +
                     error.message);
}

} // namespace kestrin::gtk
