#include "linux/reachability/NetlinkReachability.h"

#include "linux/reachability/ReachabilityLoop.h"

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr std::size_t kLongestName = 253;

bool canBeName(const std::string& host) {
    return !host.empty() && host.size() <= kLongestName &&
           std::ranges::all_of(host, [](char c) { return c > ' ' && c <= '~'; });
}

class Target final : public platform::ReachabilityTarget {
  public:
    Target(std::shared_ptr<ReachabilityLoop> loop, std::shared_ptr<Destination> destination)
        : m_loop(std::move(loop)), m_destination(std::move(destination)) {
        m_loop->add(m_destination);
    }
    ~Target() override { stop(); }

    std::optional<platform::ReachabilityFlags> flags() override { return m_destination->flags(); }
    bool start(platform::SerialQueue& queue, Changed changed) override {
        if (!m_loop->canListen())
            return false;
        m_destination->start(queue, std::move(changed));
        m_loop->wake(m_destination);
        return true;
    }
    void stop() override { m_destination->stop(); }

  private:
    const std::shared_ptr<ReachabilityLoop> m_loop;
    const std::shared_ptr<Destination> m_destination;
};

} // namespace

NetlinkReachability::NetlinkReachability(ReachabilityOptions options)
    : m_hostMap(std::move(options.hostMap)), m_paths(std::make_shared<PathFinder>(std::move(options.sysfs))) {
}

NetlinkReachability::~NetlinkReachability() = default;

std::shared_ptr<ReachabilityLoop> NetlinkReachability::loop() {
    const std::lock_guard lock(m_mutex);
    if (!m_loop)
        m_loop = std::make_shared<ReachabilityLoop>();
    return m_loop;
}

std::unique_ptr<platform::ReachabilityTarget> NetlinkReachability::makeForHost(const std::string& host) {
    if (!canBeName(host))
        return nullptr;
    const HostMap::Target* const mapped = m_hostMap.find(host);
    return std::make_unique<Target>(
        loop(), std::make_shared<Destination>(m_paths, mapped ? mapped->address : host, std::nullopt));
}

std::unique_ptr<platform::ReachabilityTarget>
NetlinkReachability::makeForAddress(const platform::IpAddress& address) {
    return std::make_unique<Target>(
        loop(), std::make_shared<Destination>(m_paths, "", Destination::Addresses{address}));
}

} // namespace kestrin::gtk
