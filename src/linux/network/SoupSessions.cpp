#include "linux/network/SoupSessions.h"

#include "linux/network/MappedAddress.h"

namespace kestrin::gtk {

namespace {
constexpr int kConnectionsPerHost = 6;
}

SoupSession* SoupSessions::find(const std::string& host, bool strict) {
    const HostMap::Target* target = m_map.find(host);
    GRef<SoupSession>& session = m_sessions[{target ? host : "", strict}];
    if (!session)
        session = make(host, target);
    return session.get();
}

GRef<SoupSession> SoupSessions::make(const std::string& host, const HostMap::Target* target) const {
    const GRef<GSocketConnectable> address =
        target ? makeMappedAddress(host, *target) : GRef<GSocketConnectable>();
    return GRef<SoupSession>::adopt(
        soup_session_new_with_options("timeout", m_idleTimeout, "max-conns-per-host", kConnectionsPerHost,
                                      "remote-connectable", address.get(), nullptr));
}

} // namespace kestrin::gtk
