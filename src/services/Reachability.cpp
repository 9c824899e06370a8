#include "services/Reachability.h"

#include "platform/Platform.h"
#include "services/util/Format.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

ReachabilityTargets& targets() { return platform::platform().reachability(); }

} // namespace

std::shared_ptr<Reachability> Reachability::reachabilityWithHostName(const std::string& host) {
    return initWithReachabilityRef(targets().makeForHost(host));
}

std::shared_ptr<Reachability> Reachability::reachabilityWithHostname(const std::string& host) {
    return reachabilityWithHostName(host);
}

std::shared_ptr<Reachability> Reachability::reachabilityWithAddress(const IpAddress& address) {
    return initWithReachabilityRef(targets().makeForAddress(address));
}

std::shared_ptr<Reachability> Reachability::reachabilityForInternetConnection() {
    return reachabilityWithAddress(kInternet);
}

std::shared_ptr<Reachability> Reachability::reachabilityForLocalWiFi() {
    return reachabilityWithAddress(kLocalWiFi);
}

std::shared_ptr<Reachability>
Reachability::initWithReachabilityRef(std::unique_ptr<ReachabilityTarget> target) {
    return target ? std::shared_ptr<Reachability>(new Reachability(std::move(target))) : nullptr;
}

Reachability::Reachability(std::unique_ptr<ReachabilityTarget> target)
    : _reachabilitySerialQueue(platform::platform().dispatch().makeSerialQueue("com.kestrin.reachability")),
      _reachabilityRef(std::move(target)) {}

Reachability::~Reachability() { stopNotifier(); }

bool Reachability::isReachableWithFlags(Flags flags) const {
    constexpr Flags kOnlyOnceDialled = kTransientConnection | kConnectionRequired;
    if (!(flags & kReachable) || (flags & kOnlyOnceDialled) == kOnlyOnceDialled)
        return false;
    return !(flags & kIsCellular) || _reachableOnWWAN;
}

bool Reachability::isReachable() const { return isReachableWithFlags(reachabilityFlags()); }

bool Reachability::isReachableViaWWAN() const { return has(kReachable | kIsCellular); }

bool Reachability::isReachableViaWiFi() const {
    return (reachabilityFlags() & (kReachable | kIsCellular)) == kReachable;
}

bool Reachability::isConnectionRequired() const { return has(kConnectionRequired); }

bool Reachability::isConnectionOnDemand() const {
    const Flags flags = reachabilityFlags();
    return (flags & kConnectionRequired) && (flags & (kConnectionOnTraffic | kConnectionOnDemand));
}

bool Reachability::isInterventionRequired() const { return has(kConnectionRequired | kInterventionRequired); }

Reachability::Status Reachability::currentReachabilityStatus() const {
    if (!isReachable())
        return notReachable;
    return isReachableViaWiFi() ? reachableViaWiFi : reachableViaWWAN;
}

Reachability::Flags Reachability::reachabilityFlags() const { return _reachabilityRef->flags().value_or(0); }

std::string Reachability::currentReachabilityString() const {
    const Status status = currentReachabilityStatus();
    const char* const text = status == reachableViaWWAN   ? "Cellular"
                             : status == reachableViaWiFi ? "WiFi"
                                                          : "No Connection";
    return platform::platform().storage().localizedText(text);
}

std::string Reachability::currentReachabilityFlags() const {
    const auto mark = [flags = reachabilityFlags()](Flags flag, char letter) {
        return flags & flag ? letter : '-';
    };
    return format("%c%c %c%c%c%c%c%c%c", mark(kIsCellular, 'W'), mark(kReachable, 'R'),
                  mark(kConnectionRequired, 'c'), mark(kTransientConnection, 't'),
                  mark(kInterventionRequired, 'i'), mark(kConnectionOnTraffic, 'C'),
                  mark(kConnectionOnDemand, 'D'), mark(kIsLocalAddress, 'l'), mark(kIsDirect, 'd'));
}

std::string Reachability::description() const {
    return format("<%@: %#x (%@)>", "Reachability", reinterpret_cast<std::uintptr_t>(this),
                  currentReachabilityFlags());
}

bool Reachability::startNotifier() {
    if (_reachabilityObject == this)
        return true;
    const bool started =
        _reachabilityRef->start(*_reachabilitySerialQueue, [weakly = weak_from_this()](Flags flags) {
            if (const auto self = weakly.lock())
                self->reachabilityChanged(flags);
        });
    _reachabilityObject = started ? this : nullptr;
    return started;
}

void Reachability::stopNotifier() {
    _reachabilityRef->stop();
    _reachabilityObject = nullptr;
}

void Reachability::reachabilityChanged(Flags flags) {
    const auto block = (isReachableWithFlags(flags) ? _reachableBlock : _unreachableBlock).read();
    if (*block)
        (*block)(*this);
    platform::platform().dispatch().mainAsync([self = shared_from_this()] {
        platform::platform().application().notifications().post(kReachabilityChangedNotification, self);
    });
}

} // namespace kestrin
