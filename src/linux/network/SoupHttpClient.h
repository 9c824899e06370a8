#pragma once

#include "linux/network/HttpExchanges.h"
#include "linux/network/IoThread.h"
#include "platform/Dispatch.h"
#include "platform/Log.h"
#include "platform/Network.h"

#include <optional>

namespace kestrin::gtk {

struct HttpOptions {
    HostMap hostMap;
    unsigned idleTimeout = 60;                   ///< seconds without a byte after which a request has failed
    std::shared_ptr<platform::LogSink> log = {}; ///< is told of refused servers; may be null
};

/// HTTP over libsoup, on a thread of its own; connections are kept alive and shared by all requests. `data:`
/// addresses are decoded. A delegate is told of each TLS handshake, on that thread; its answer counts when
/// the certificate fails the checks.
class SoupHttpClient final : public platform::HttpClient {
  public:
    /// `dispatch` outlives the client.
    explicit SoupHttpClient(platform::Dispatch& dispatch, HttpOptions options = {});
    /// What is under way ends with none.
    ~SoupHttpClient() override;

    void send(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
              Completion done) override;
    std::optional<platform::HttpResponse> fetch(const platform::HttpRequest& request,
                                                platform::AuthenticationDelegate* delegate) override;

  private:
    void run(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
             HttpExchange::Done done);

    platform::Dispatch& m_dispatch;
    std::optional<HttpExchanges> m_exchanges; ///< made, used and destroyed on the I/O thread
    IoThread m_io;                            ///< last: its destruction waits for all that is posted
};

} // namespace kestrin::gtk
