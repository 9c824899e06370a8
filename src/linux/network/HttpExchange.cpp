#include "linux/network/HttpExchange.h"

#include "linux/network/HttpAddress.h"
#include "linux/toolkit/DebugTopics.h"

#include <utility>

namespace kestrin::gtk {

namespace {
constexpr int kMostRedirects = 20;
}

HttpExchange::HttpExchange(SoupSessions& sessions, platform::HttpRequest request,
                           platform::AuthenticationDelegate* delegate, platform::LogSink* log, Done done)
    : m_sessions(sessions), m_request(std::move(request)), m_delegate(delegate), m_log(log),
      m_done(std::move(done)) {}

template <void (HttpExchange::*step)(GAsyncResult*)>
void HttpExchange::resume(GObject*, GAsyncResult* result, gpointer self) {
    const std::unique_ptr<std::shared_ptr<HttpExchange>> exchange(
        static_cast<std::shared_ptr<HttpExchange>*>(self));
    (**exchange.*step)(result);
}

gpointer HttpExchange::keepAlive() { return new std::shared_ptr(shared_from_this()); }

void HttpExchange::start() {
    const GAddress uri = parseHttpAddress(m_request.url);
    if (!uri)
        return finish(std::nullopt);
    m_host = g_uri_get_host(uri.get());
    m_session = GRef<SoupSession>::ref(m_sessions.find(m_host, m_delegate == nullptr));
    m_message = makeMessage(uri.get());
    m_began = g_get_monotonic_time();
    watchHandshake();
    soup_session_send_async(m_session.get(), m_message.get(), G_PRIORITY_DEFAULT, m_cancellable.get(),
                            resume<&HttpExchange::onAnswer>, keepAlive());
}

GRef<SoupMessage> HttpExchange::makeMessage(GUri* uri) {
    auto message = GRef<SoupMessage>::adopt(soup_message_new_from_uri(m_request.method.c_str(), uri));
    // Another host may be mapped to elsewhere, which is another session's business.
    soup_message_add_flags(message.get(), SOUP_MESSAGE_NO_REDIRECT);
    SoupMessageHeaders* headers = soup_message_get_request_headers(message.get());
    for (const auto& [name, value] : m_request.headers)
        soup_message_headers_replace(headers, name.c_str(), value.c_str());
    if (!m_request.body.empty()) {
        const GData body(g_bytes_new(m_request.body.data(), m_request.body.size()));
        soup_message_set_request_body_from_bytes(message.get(), nullptr, body.get());
    }
    return message;
}

// The library asks about bad certificates only, within the handshake. A good one is reported at its end, so
// that the delegate hears of each handshake once.
void HttpExchange::watchHandshake() {
    if (!m_delegate)
        return;
    g_signal_connect(m_message.get(), "accept-certificate",
                     G_CALLBACK(+[](SoupMessage*, GTlsCertificate*, GTlsCertificateFlags,
                                    HttpExchange* self) -> gboolean { return self->askAboutServer(); }),
                     this);
    g_signal_connect(m_message.get(), "network-event",
                     G_CALLBACK(+[](SoupMessage*, GSocketClientEvent event, GIOStream*, HttpExchange* self) {
                         if (event == G_SOCKET_CLIENT_TLS_HANDSHAKING)
                             self->m_asked = false;
                         else if (event == G_SOCKET_CLIENT_TLS_HANDSHAKED && !self->m_asked)
                             self->askAboutServer();
                     }),
                     this);
}

bool HttpExchange::askAboutServer() {
    m_asked = true;
    return m_delegate->acceptServerTrust(m_host);
}

void HttpExchange::onAnswer(GAsyncResult* result) {
    GFailure failure;
    m_stream = GRef<GInputStream>::adopt(soup_session_send_finish(m_session.get(), result, failure.out()));
    if (!m_stream)
        return fail(failure.error());
    const goffset declared =
        soup_message_headers_get_content_length(soup_message_get_response_headers(m_message.get()));
    if (declared > static_cast<goffset>(kLargestBody))
        return finish(std::nullopt);
    m_body.clear();
    m_body.reserve(static_cast<std::size_t>(declared));
    read();
}

void HttpExchange::read() {
    g_input_stream_read_async(m_stream.get(), m_chunk.data(), m_chunk.size(), G_PRIORITY_DEFAULT,
                              m_cancellable.get(), resume<&HttpExchange::onRead>, keepAlive());
}

void HttpExchange::onRead(GAsyncResult* result) {
    GFailure failure;
    const gssize size = g_input_stream_read_finish(m_stream.get(), result, failure.out());
    if (size < 0)
        return fail(failure.error());
    if (size == 0)
        return onEnd();
    m_body.append(m_chunk.data(), static_cast<std::size_t>(size));
    if (m_body.size() > kLargestBody)
        return finish(std::nullopt);
    read();
}

void HttpExchange::onEnd() {
    trace(std::to_string(soup_message_get_status(m_message.get())) + ", " + std::to_string(m_body.size()) +
          " bytes");
    const char* location = redirectLocation();
    if (!location)
        return finish(platform::HttpResponse{static_cast<int>(soup_message_get_status(m_message.get())),
                                             std::move(m_body)});
    auto url = resolveRedirect(m_request.url, location);
    if (!url || ++m_redirects > kMostRedirects)
        return finish(std::nullopt);
    redirect(std::move(*url));
}

const char* HttpExchange::redirectLocation() const {
    switch (soup_message_get_status(m_message.get())) {
    case SOUP_STATUS_MOVED_PERMANENTLY:
    case SOUP_STATUS_FOUND:
    case SOUP_STATUS_SEE_OTHER:
    case SOUP_STATUS_TEMPORARY_REDIRECT:
    case SOUP_STATUS_PERMANENT_REDIRECT:
        return soup_message_headers_get_one(soup_message_get_response_headers(m_message.get()), "Location");
    default:
        return nullptr;
    }
}

void HttpExchange::redirect(std::string url) {
    const SoupStatus status = soup_message_get_status(m_message.get());
    const bool repeats = status == SOUP_STATUS_TEMPORARY_REDIRECT || status == SOUP_STATUS_PERMANENT_REDIRECT;
    if (!repeats && m_request.method != "GET" && m_request.method != "HEAD") {
        m_request.method = "GET";
        m_request.body.clear();
        m_request.headers.erase("Content-Type");
    }
    m_request.url = std::move(url);
    g_signal_handlers_disconnect_by_data(m_message.get(), this);
    m_stream.reset();
    start();
}

void HttpExchange::fail(const GError* error) {
    trace(error->message);
    if (m_log && g_error_matches(error, G_TLS_ERROR, G_TLS_ERROR_BAD_CERTIFICATE))
        m_log->write("Kestrin - HttpExchange - The certificate of " + m_host +
                     " is not one that the system trusts, and nobody has accepted it.");
    finish(std::nullopt);
}

void HttpExchange::trace(const std::string& outcome) const {
    if (isDebugged(Topic::network))
        debugLine(Topic::network, m_request.method + ' ' + m_request.url + ": " + outcome + ", " +
                                      std::to_string((g_get_monotonic_time() - m_began) / 1000) + " ms");
}

void HttpExchange::finish(std::optional<platform::HttpResponse> response) {
    if (m_message)
        g_signal_handlers_disconnect_by_data(m_message.get(), this);
    m_stream.reset();
    std::exchange(m_done, nullptr)(std::move(response));
}

} // namespace kestrin::gtk
