#pragma once

#include "linux/reachability/RouteSocket.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// A network device.
struct Link {
    std::string name;
    bool isRunning = false; ///< up, and connected: routes stay when a cable is pulled out
};

/// None when there is no such link.
std::optional<Link> readLink(RouteSocket& socket, int index);
std::vector<Link> readLinks(RouteSocket& socket);

} // namespace kestrin::gtk
