#pragma once

#include "linux/reachability/RouteSocket.h"
#include "platform/Network.h"

#include <optional>

namespace kestrin::gtk {

/// The way that a packet would take.
struct Route {
    int link = 0; ///< its index
    bool isLocal = false;
    bool hasGateway = false;
};

/// None when there is no way.
std::optional<Route> findRoute(RouteSocket& socket, const platform::IpAddress& address);

} // namespace kestrin::gtk
