#include "linux/web/LoadTrace.h"

#include "linux/toolkit/DebugTopics.h"

#include <utility>

namespace kestrin::gtk {

namespace {

void onChanged(WebKitWebView* view, WebKitLoadEvent event, gpointer) {
    const char* const steps[] = {"begins", "is redirected", "has an answer", "is over"};
    const char* const url = webkit_web_view_get_uri(view);
    debugLine(Topic::web, std::string("the load of ") + (url && *url ? url : "nothing") + ' ' + steps[event]);
}

/// One resource on its way. It ends with the resource, which may outlive the view.
struct Fetch {
    const gint64 began = g_get_monotonic_time();
    bool isTold = false; ///< what has failed finishes too

    void tell(WebKitWebResource* resource, const std::string& outcome) {
        if (std::exchange(isTold, true))
            return;
        const auto past = (g_get_monotonic_time() - began) / 1000;
        debugLine(Topic::web, outcome + ' ' + webkit_web_resource_get_uri(resource) + ", " +
                                  std::to_string(past) + " ms");
    }
};

void onFinished(WebKitWebResource* resource, Fetch* fetch) {
    WebKitURIResponse* const response = webkit_web_resource_get_response(resource);
    const guint status = response ? webkit_uri_response_get_status_code(response) : 0;
    fetch->tell(resource, status == 0 ? "there is" : std::to_string(status));
}

void onFailed(WebKitWebResource* resource, const GError* error, Fetch* fetch) {
    fetch->tell(resource, std::string("failed (") + error->message + ')');
}

void onBadCertificate(WebKitWebResource* resource, GTlsCertificate*, GTlsCertificateFlags, Fetch* fetch) {
    fetch->tell(resource, "the certificate fails the check:");
}

void onResource(WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*, gpointer) {
    auto* const fetch = new Fetch;
    g_object_set_data_full(G_OBJECT(resource), "kestrin-fetch", fetch,
                           [](gpointer gone) { delete static_cast<Fetch*>(gone); });
    g_signal_connect(resource, "finished", G_CALLBACK(onFinished), fetch);
    g_signal_connect(resource, "failed", G_CALLBACK(onFailed), fetch);
    g_signal_connect(resource, "failed-with-tls-errors", G_CALLBACK(onBadCertificate), fetch);
}

} // namespace

LoadTrace::LoadTrace(WebKitWebView* view) {
    if (!isDebugged(Topic::web))
        return;
    m_signals.emplace_back(view, "load-changed", G_CALLBACK(onChanged), nullptr);
    m_signals.emplace_back(view, "resource-load-started", G_CALLBACK(onResource), nullptr);
}

} // namespace kestrin::gtk
