#pragma once

#include "platform/Network.h"
#include "services/util/Snapshot.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace kestrin {

/// Posted on main at each change that a notifier sees; the sender is its Reachability.
inline constexpr const char* kReachabilityChangedNotification = "kReachabilityChangedNotification";

/// Watches whether a host or an address can be reached. What the device knows of its links and routes counts;
/// nothing is sent anywhere. Thread: any, unless said otherwise.
class Reachability : public std::enable_shared_from_this<Reachability> {
  public:
    using Flags = platform::ReachabilityFlags;
    /// Runs on the object's own queue.
    using Block = std::function<void(Reachability& reachability)>;
    enum Status { notReachable = 0, reachableViaWWAN = 1, reachableViaWiFi = 2 };

    /// Null when the platform refuses, as for the others.
    static std::shared_ptr<Reachability> reachabilityWithHostName(const std::string& host);
    static std::shared_ptr<Reachability> reachabilityWithHostname(const std::string& host);
    static std::shared_ptr<Reachability> reachabilityWithAddress(const platform::IpAddress& address);
    static std::shared_ptr<Reachability> reachabilityForInternetConnection();
    static std::shared_ptr<Reachability> reachabilityForLocalWiFi();
    /// Null for a null target.
    static std::shared_ptr<Reachability>
    initWithReachabilityRef(std::unique_ptr<platform::ReachabilityTarget> target);
    /// Stops the notifier.
    ~Reachability();

    /// Whether a way over a cellular network counts; true at first.
    void setReachableOnWWAN(bool value) { _reachableOnWWAN = value; }
    bool reachableOnWWAN() const { return _reachableOnWWAN; }
    /// What runs at a change; none at first. Held until replaced or until this object ends.
    void setReachableBlock(Block block) { _reachableBlock.write(std::move(block)); }
    void setUnreachableBlock(Block block) { _unreachableBlock.write(std::move(block)); }

    /// These look at the present flags; when they cannot be read, nothing is reachable.
    bool isReachable() const;
    bool isReachableViaWWAN() const;
    bool isReachableViaWiFi() const;
    bool isConnectionRequired() const;
    bool connectionRequired() const { return isConnectionRequired(); }
    bool isConnectionOnDemand() const;
    bool isInterventionRequired() const;
    Status currentReachabilityStatus() const;
    Flags reachabilityFlags() const;
    /// For people, in their language.
    std::string currentReachabilityString() const;
    /// A letter for each flag that is set, a dash for each that is not.
    std::string currentReachabilityFlags() const;
    std::string description() const;

    bool isReachableWithFlags(Flags flags) const;

    /// From now on changes run the blocks and are posted, the present state first. True also when it runs
    /// already. The notifier ends with the object. Thread: main.
    bool startNotifier();
    void stopNotifier();

  private:
    explicit Reachability(std::unique_ptr<platform::ReachabilityTarget> target);
    bool has(Flags flags) const { return (reachabilityFlags() & flags) == flags; }
    void reachabilityChanged(Flags flags);

    std::atomic<bool> _reachableOnWWAN = true;
    Snapshot<Block> _reachableBlock, _unreachableBlock;
    const std::unique_ptr<platform::SerialQueue> _reachabilitySerialQueue;
    const std::unique_ptr<platform::ReachabilityTarget> _reachabilityRef; ///< stops before its queue ends
    const Reachability* _reachabilityObject = nullptr;                    ///< this, while the notifier runs
};

} // namespace kestrin
