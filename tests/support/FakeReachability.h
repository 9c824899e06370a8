#pragma once

#include "platform/Network.h"

#include <map>
#include <memory>
#include <string>

namespace kestrin::test {

/// Ways whose flags the test sets, one for each host name and one for each address. Thread: main.
class FakeReachability : public platform::ReachabilityTargets {
  public:
    struct Way {
        std::optional<platform::ReachabilityFlags> flags = platform::kReachable;
        bool canStart = true;
        int starts = 0;
        platform::SerialQueue* queue = nullptr;
        platform::ReachabilityTarget::Changed changed;

        /// Tells whoever listens.
        void become(platform::ReachabilityFlags value) {
            flags = value;
            if (changed)
                queue->async([told = changed, value] { told(value); });
        }
    };

    std::unique_ptr<platform::ReachabilityTarget> makeForHost(const std::string& host) override {
        return host.empty() ? nullptr : std::make_unique<Target>(hosts[host]);
    }
    std::unique_ptr<platform::ReachabilityTarget>
    makeForAddress(const platform::IpAddress& address) override {
        return std::make_unique<Target>(addresses[address]);
    }

    std::map<std::string, Way> hosts;
    std::map<platform::IpAddress, Way> addresses;

  private:
    struct Target : platform::ReachabilityTarget {
        explicit Target(Way& w) : way(w) {}
        ~Target() override { stop(); }
        std::optional<platform::ReachabilityFlags> flags() override { return way.flags; }
        bool start(platform::SerialQueue& queue, Changed changed) override {
            if (!way.canStart)
                return false;
            ++way.starts;
            way.queue = &queue;
            way.changed = std::move(changed);
            way.become(*way.flags);
            return true;
        }
        void stop() override { way.changed = nullptr; }
        Way& way;
    };
};

} // namespace kestrin::test
