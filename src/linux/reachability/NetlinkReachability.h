#pragma once

#include "linux/network/HostMap.h"
#include "platform/Network.h"

#include <filesystem>
#include <memory>
#include <mutex>

namespace kestrin::gtk {

class PathFinder;
class ReachabilityLoop;

struct ReachabilityOptions {
    HostMap hostMap;
    std::filesystem::path sysfs = "/sys"; ///< where the kinds of links are read
};

/// Reachability by the kernel's routes and links. A link without carrier leads nowhere, whatever the routes
/// say. The internet is where an address leads that no nearer route names; a local wireless network is there
/// while a wireless link is connected. Thread: any.
class NetlinkReachability final : public platform::ReachabilityTargets {
  public:
    explicit NetlinkReachability(ReachabilityOptions options = {});
    ~NetlinkReachability() override;

    /// Null for a name that no host can have. The name is looked up at once, off this thread.
    std::unique_ptr<platform::ReachabilityTarget> makeForHost(const std::string& host) override;
    std::unique_ptr<platform::ReachabilityTarget> makeForAddress(const platform::IpAddress& address) override;

  private:
    /// Begun with the first target.
    std::shared_ptr<ReachabilityLoop> loop();

    const HostMap m_hostMap;
    const std::shared_ptr<const PathFinder> m_paths;
    std::mutex m_mutex; ///< of the next
    std::shared_ptr<ReachabilityLoop> m_loop;
};

} // namespace kestrin::gtk
