#pragma once

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
    Client();
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    Answer request(const std::string& method, const std::string& url,
                   const std::map<std::string, std::string>& headers = {}, const std::string& body = "");
    Answer get(const std::string& url, const std::map<std::string, std::string>& headers = {}) {
        return request("GET", url, headers);
    }

  private:
    SoupSession* m_session;
};

std::string urlOf(std::uint16_t port, const std::string& path);

} // namespace kestrin::content
