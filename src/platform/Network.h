#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kestrin::platform {

/// Answers the question whether a server is to be trusted.
class AuthenticationDelegate {
  public:
    virtual ~AuthenticationDelegate() = default;
    /// Whether to go on with the certificate that `host` showed, unchecked; false leaves it to the system's
    /// check. Thread: main or worker.
    virtual bool acceptServerTrust(const std::string& host) = 0;
};

struct HttpRequest {
    std::string url;
    std::string method = "GET";
    std::map<std::string, std::string> headers;
    std::string body;
};

struct HttpResponse {
    int status = 0;
    std::string body;
};

/// HTTP(S) requests. A transport error, an address that cannot be requested or a body over 64 MB gives none.
class HttpClient {
  public:
    /// Called on main.
    using Completion = std::function<void(std::optional<HttpResponse>)>;

    virtual ~HttpClient() = default;
    /// `delegate` lives until the completion is called; it may be null, then certificates are checked.
    /// Thread: any.
    virtual void send(const HttpRequest& request, AuthenticationDelegate* delegate, Completion done) = 0;
    /// Blocks. Thread: worker; any for a `data:` address, which holds its own answer.
    virtual std::optional<HttpResponse> fetch(const HttpRequest& request,
                                              AuthenticationDelegate* delegate) = 0;
};

} // namespace kestrin::platform
