#pragma once

#include "content/GPointer.h"

#include <cstdint>
#include <libsoup/soup.h>
#include <map>
#include <string>

namespace kestrin::content {

struct Answer {
    unsigned status = 0; // 0: no answer came, and `error` says why
    std::map<std::string, std::string> headers;
    std::string body;
    std::string error;
};

/// A libsoup session that accepts any certificate and keeps its connections open.
class Client {
  public:
    ~Client() { soup_session_abort(m_session.get()); }

    Answer request(const std::string& method, const std::string& url,
                   const std::map<std::string, std::string>& headers = {}, const std::string& body = "") {
        const auto message = GPointer<SoupMessage>::adopt(soup_message_new(method.c_str(), url.c_str()));
        g_signal_connect(message.get(), "accept-certificate", G_CALLBACK(+[] { return TRUE; }), nullptr);
        for (const auto& [name, value] : headers)
            soup_message_headers_replace(soup_message_get_request_headers(message.get()), name.c_str(),
                                         value.c_str());
        using Bytes = GHandle<GBytes, g_bytes_unref>;
        const Bytes sent(g_bytes_new(body.data(), body.size()));
        if (!body.empty())
            soup_message_set_request_body_from_bytes(message.get(), nullptr, sent.get());
        Answer answer;
        GFailure failure;
        const Bytes received(
            soup_session_send_and_read(m_session.get(), message.get(), nullptr, failure.out()));
        if (!received) {
            answer.error = failure.text();
            return answer;
        }
        gsize size = 0;
        const auto* const data = static_cast<const char*>(g_bytes_get_data(received.get(), &size));
        answer.body.assign(data ? data : "", size);
        answer.status = soup_message_get_status(message.get());
        soup_message_headers_foreach(
            soup_message_get_response_headers(message.get()),
            +[](const char* name, const char* value, gpointer to) {
                (*static_cast<std::map<std::string, std::string>*>(to))[name] = value;
            },
            &answer.headers);
        return answer;
    }
    Answer get(const std::string& url, const std::map<std::string, std::string>& headers = {}) {
        return request("GET", url, headers);
    }

  private:
    // Without the system's trusted certificates, which would be read anew for every connection.
    const GPointer<SoupSession> m_session =
        GPointer<SoupSession>::adopt(soup_session_new_with_options("tls-database", nullptr, nullptr));
};

inline std::string urlOf(std::uint16_t port, const std::string& path) {
    return "https://127.0.0.1:" + std::to_string(port) + path;
}

} // namespace kestrin::content
