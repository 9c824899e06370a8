#pragma once

#include "linux/reachability/PathFinder.h"
#include "platform/Network.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// Where a target leads, and who wants to know about it. Thread: any.
class Destination {
  public:
    using Addresses = std::vector<platform::IpAddress>;

    /// One with a host to look up gets its addresses later.
    Destination(std::shared_ptr<const PathFinder> paths, std::string host, std::optional<Addresses> addresses)
        : m_paths(std::move(paths)), m_host(std::move(host)), m_addresses(std::move(addresses)) {}

    /// Empty when there is nothing to look up.
    const std::string& host() const { return m_host; }
    /// Those known before stay when nothing was found.
    void found(Addresses addresses);
    /// As those of a target.
    std::optional<platform::ReachabilityFlags> flags() const;

    void start(platform::SerialQueue& queue, platform::ReachabilityTarget::Changed changed);
    void stop();
    /// Posts the flags to whoever started, when they are known and others than those posted before. Thread:
    /// the I/O thread.
    void tell();

    unsigned lookUps = 0; ///< begun so far; the I/O thread's

  private:
    std::optional<Addresses> addresses() const;

    const std::shared_ptr<const PathFinder> m_paths;
    const std::string m_host;
    mutable std::mutex m_mutex; ///< of what follows
    std::optional<Addresses> m_addresses;
    platform::SerialQueue* m_queue = nullptr;
    platform::ReachabilityTarget::Changed m_changed;
    std::optional<platform::ReachabilityFlags> m_told;
};

} // namespace kestrin::gtk
