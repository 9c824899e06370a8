#include "Client.h"

namespace kestrin::content {

// Without the system's trusted certificates, which would be read anew for every connection.
Client::Client() : m_session(soup_session_new_with_options("tls-database", nullptr, nullptr)) {}

Client::~Client() {
    soup_session_abort(m_session);
    g_object_unref(m_session);
}

Answer Client::request(const std::string& method, const std::string& url,
                       const std::map<std::string, std::string>& headers, const std::string& body) {
    SoupMessage* const message = soup_message_new(method.c_str(), url.c_str());
    g_signal_connect(message, "accept-certificate",
                     G_CALLBACK(+[](SoupMessage*, GTlsCertificate*, GTlsCertificateFlags,
                                    gpointer) -> gboolean { return TRUE; }),
                     nullptr);
    for (const auto& [name, value] : headers)
        soup_message_headers_replace(soup_message_get_request_headers(message), name.c_str(), value.c_str());
    if (!body.empty()) {
        GBytes* const bytes = g_bytes_new(body.data(), body.size());
        soup_message_set_request_body_from_bytes(message, nullptr, bytes);
        g_bytes_unref(bytes);
    }
    Answer answer;
    GError* error = nullptr;
    if (GBytes* const received = soup_session_send_and_read(m_session, message, nullptr, &error)) {
        gsize size = 0;
        const auto* const data = static_cast<const char*>(g_bytes_get_data(received, &size));
        answer.body.assign(data ? data : "", size);
        g_bytes_unref(received);
        answer.status = soup_message_get_status(message);
        soup_message_headers_foreach(
            soup_message_get_response_headers(message),
            +[](const char* name, const char* value, gpointer to) {
                (*static_cast<std::map<std::string, std::string>*>(to))[name] = value;
            },
            &answer.headers);
    } else {
        answer.error = error->message;
        g_error_free(error);
    }
    g_object_unref(message);
    return answer;
}

std::string urlOf(std::uint16_t port, const std::string& path) {
    return "https://127.0.0.1:" + std::to_string(port) + path;
}

} // namespace kestrin::content
