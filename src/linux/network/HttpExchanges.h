#pragma once

#include "linux/network/HttpExchange.h"

#include <memory>
#include <set>

namespace kestrin::gtk {

/// The requests under way. Thread: the I/O thread.
class HttpExchanges {
  public:
    /// `log` may be null.
    HttpExchanges(HostMap map, unsigned idleTimeout, std::shared_ptr<platform::LogSink> log)
        : m_sessions(std::move(map), idleTimeout), m_log(std::move(log)) {}

    void run(platform::HttpRequest request, platform::AuthenticationDelegate* delegate,
             HttpExchange::Done done);
    /// Ends what is under way with none, then calls `ended`, possibly at once. Nothing is run afterwards.
    void stop(std::function<void()> ended);

  private:
    void remove(const std::shared_ptr<HttpExchange>& exchange);

    SoupSessions m_sessions;
    const std::shared_ptr<platform::LogSink> m_log;
    std::set<std::shared_ptr<HttpExchange>> m_running;
    std::function<void()> m_ended;
};

} // namespace kestrin::gtk
