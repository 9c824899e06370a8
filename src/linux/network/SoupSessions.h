#pragma once

#include "linux/network/HostMap.h"
#include "linux/toolkit/GRef.h"

#include <libsoup/soup.h>

#include <map>
#include <string>
#include <utility>

namespace kestrin::gtk {

/// The sessions behind the requests. A session keeps connections alive and has one way of connecting, so
/// there is one for each mapped host; and a connection whose certificate a delegate let pass must not serve a
/// request that wants it checked, so these are kept apart as well. Thread: the I/O thread.
class SoupSessions {
  public:
    /// `idleTimeout`: seconds without a byte after which a request has failed.
    SoupSessions(HostMap map, unsigned idleTimeout) : m_map(std::move(map)), m_idleTimeout(idleTimeout) {}

    SoupSession* find(const std::string& host, bool strict);

  private:
    GRef<SoupSession> make(const std::string& host, const HostMap::Target* target) const;

    HostMap m_map;
    unsigned m_idleTimeout;
    std::map<std::pair<std::string, bool>, GRef<SoupSession>> m_sessions;
};

} // namespace kestrin::gtk
