#include "linux/reachability/PathFinder.h"

#include "linux/reachability/Route.h"

#include <algorithm>

namespace kestrin::gtk {

using namespace platform;

namespace {

// Nobody has these addresses, which documents use, so that only the way out leads there.
constexpr Ipv4Address kFarAway{203, 0, 113, 1};
constexpr Ipv6Address kFarAway6{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

} // namespace

std::optional<PathFinder::Flags> PathFinder::find(const IpAddress& address) const {
    RouteSocket socket;
    if (!socket.isOpen())
        return std::nullopt;
    if (address == IpAddress(kInternet))
        return findInternet(socket);
    return address == IpAddress(kLocalWiFi) ? findLocalWiFi(socket) : follow(socket, address);
}

PathFinder::Flags PathFinder::follow(RouteSocket& socket, const IpAddress& address) const {
    const auto route = findRoute(socket, address);
    const auto link = route ? readLink(socket, route->link) : std::nullopt;
    if (!link || !link->isRunning)
        return 0;
    return kReachable | (route->isLocal ? kIsLocalAddress : 0) | (route->hasGateway ? 0 : kIsDirect) |
           (m_kinds.isCellular(link->name) ? kIsCellular : 0);
}

PathFinder::Flags PathFinder::findInternet(RouteSocket& socket) const {
    const Flags flags = follow(socket, kFarAway);
    return flags ? flags : follow(socket, kFarAway6);
}

PathFinder::Flags PathFinder::findLocalWiFi(RouteSocket& socket) const {
    const auto links = readLinks(socket);
    const bool joined = std::ranges::any_of(
        links, [&](const Link& link) { return link.isRunning && m_kinds.isWireless(link.name); });
    return joined ? kReachable | kIsDirect : 0;
}

} // namespace kestrin::gtk
