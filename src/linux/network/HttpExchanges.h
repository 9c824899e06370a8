#pragma once

#include "linux/network/HttpExchange.h"

#include <memory>
#include <set>

namespace kestrin::gtk {

/// The requests under way. Thread: the I/O thread.
class HttpExchanges {
  public:
    HttpExchanges(HostMap map, unsigned idleTimeout) : m_sessions(std::move(map), idleTimeout) {}

    void run(platform::HttpRequest request, platform::AuthenticationDelegate* delegate,
             HttpExchange::Done done);
    /// Ends what is under way with none, then calls `ended`, possibly at once. Nothing is run afterwards.
    void stop(std::function<void()> ended);

  private:
    void remove(const std::shared_ptr<HttpExchange>& exchange);

    SoupSessions m_sessions;
    std::set<std::shared_ptr<HttpExchange>> m_running;
    std::function<void()> m_ended;
};

} // namespace kestrin::gtk
