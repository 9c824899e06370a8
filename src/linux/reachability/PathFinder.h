#pragma once

#include "linux/reachability/Link.h"
#include "linux/reachability/LinkKinds.h"
#include "platform/Network.h"

#include <optional>

namespace kestrin::gtk {

/// Finds out how an address can be reached from the kernel's routes and links, in some ten microseconds.
/// Thread: any.
class PathFinder {
  public:
    using Flags = platform::ReachabilityFlags;

    explicit PathFinder(std::filesystem::path sysfs) : m_kinds(std::move(sysfs)) {}

    /// None when the kernel cannot be asked.
    std::optional<Flags> find(const platform::IpAddress& address) const;

  private:
    Flags follow(RouteSocket& socket, const platform::IpAddress& address) const;
    Flags findInternet(RouteSocket& socket) const;
    Flags findLocalWiFi(RouteSocket& socket) const;

    const LinkKinds m_kinds;
};

} // namespace kestrin::gtk
