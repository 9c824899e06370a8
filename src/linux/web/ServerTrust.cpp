#include "linux/web/ServerTrust.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr int kMostRetries = 5;

/// Empty when there is none.
std::string hostOf(const char* url) {
    const GOwned<GUri, g_uri_unref> uri(url ? g_uri_parse(url, G_URI_FLAGS_NONE, nullptr) : nullptr);
    const char* host = uri ? g_uri_get_host(uri.get()) : nullptr;
    return host ? host : "";
}

} // namespace

std::shared_ptr<ServerTrust> ServerTrust::make(WebKitWebView* view, Load load) {
    std::shared_ptr<ServerTrust> trust(new ServerTrust(view, std::move(load)));
    trust->watch();
    return trust;
}

ServerTrust::ServerTrust(WebKitWebView* view, Load load) : m_view(view), m_load(std::move(load)) {}

void ServerTrust::watch() {
    m_signals.emplace_back(
        m_view, "load-changed",
        G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, ServerTrust* self) { self->onChanged(event); }),
        this);
    m_signals.emplace_back(
        m_view, "load-failed-with-tls-errors",
        G_CALLBACK(+[](WebKitWebView*, const char* url, GTlsCertificate* certificate, GTlsCertificateFlags,
                       ServerTrust* self) -> gboolean { return self->onBadPage(url, certificate); }),
        this);
    m_signals.emplace_back(m_view, "resource-load-started",
                           G_CALLBACK(+[](WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*,
                                          ServerTrust* self) { self->watchResource(resource); }),
                           this);
}

void ServerTrust::onChanged(WebKitLoadEvent event) {
    if (event == WEBKIT_LOAD_STARTED)
        onStarted();
    else if (event == WEBKIT_LOAD_COMMITTED)
        onCommitted();
    else if (event == WEBKIT_LOAD_FINISHED && !m_retryUrl.empty()) {
        m_isRetrying = true;
        ++m_retries;
        m_load(std::exchange(m_retryUrl, {}));
    }
}

void ServerTrust::onStarted() {
    if (std::exchange(m_isRetrying, false))
        return;
    m_answers.clear();
    m_retries = 0;
}

// The delegate may destroy the web view, and all this with it; WebKit's object lives until its signal is
// over.
void ServerTrust::onCommitted() {
    const auto self = shared_from_this();
    GTlsCertificate* certificate = nullptr;
    GTlsCertificateFlags errors{};
    const std::string host = hostOf(webkit_web_view_get_uri(m_view));
    if (webkit_web_view_get_tls_info(m_view, &certificate, &errors) && !m_answers.contains(host))
        ask(host);
}

bool ServerTrust::onBadPage(const char* url, GTlsCertificate* certificate) {
    const auto self = shared_from_this();
    return accept(hostOf(url), certificate) && retry(url);
}

bool ServerTrust::retry(const char* url) {
    if (m_retries == kMostRetries)
        return false;
    m_retryUrl = url;
    return true;
}

// A resource may outlive this. Of the page's own document `onBadPage` hears.
void ServerTrust::watchResource(WebKitWebResource* resource) {
    if (resource == webkit_web_view_get_main_resource(m_view))
        return;
    using Weak = std::weak_ptr<ServerTrust>;
    const auto failed = +[](WebKitWebResource* failing, GTlsCertificate* certificate, GTlsCertificateFlags,
                            const Weak* weak) {
        if (const auto self = weak->lock())
            self->onBadResource(webkit_web_resource_get_uri(failing), certificate);
    };
    g_signal_connect_data(
        resource, "failed-with-tls-errors", G_CALLBACK(failed), new Weak(weak_from_this()),
        [](gpointer weak, GClosure*) { delete static_cast<Weak*>(weak); }, GConnectFlags(0));
}

// A page that is still loading begins anew, so that it is whole. One that runs already keeps its state; what
// it asks of this host from now on succeeds.
void ServerTrust::onBadResource(const char* url, GTlsCertificate* certificate) {
    if (accept(hostOf(url), certificate) && webkit_web_view_is_loading(m_view))
        retry(webkit_web_view_get_uri(m_view));
}

// A host that has been accepted may fail once more: WebKit tells its network process on another road than the
// one that the next request takes, which may overtake it.
bool ServerTrust::accept(const std::string& host, GTlsCertificate* certificate) {
    const auto known = m_answers.find(host);
    if (!(known == m_answers.end() ? ask(host) : known->second))
        return false;
    webkit_network_session_allow_tls_certificate_for_host(webkit_web_view_get_network_session(m_view),
                                                          certificate, host.c_str());
    return true;
}

/// Once a load and host.
bool ServerTrust::ask(const std::string& host) {
    bool& answer = m_answers[host];
    if (const auto delegate = m_delegate.lock())
        answer = delegate->acceptServerTrust(host);
    return answer;
}

} // namespace kestrin::gtk
