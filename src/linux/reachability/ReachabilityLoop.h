#pragma once

#include "linux/network/IoThread.h"
#include "linux/reachability/Destination.h"
#include "linux/reachability/HostLookup.h"
#include "linux/reachability/NetworkChanges.h"

#include <memory>
#include <vector>

namespace kestrin::gtk {

/// Keeps destinations up to date on a thread of its own, which sleeps until the kernel tells of a change.
/// Thread: any, but for that one, on which it must not end.
class ReachabilityLoop {
  public:
    ReachabilityLoop();
    ~ReachabilityLoop();

    /// False when the kernel's changes cannot be heard.
    bool canListen() const { return m_changes.canListen(); }
    /// Looks its host up, now and whenever the network changes, as long as it lives.
    void add(const std::shared_ptr<Destination>& destination);
    /// Lets it tell its present flags.
    void wake(const std::shared_ptr<Destination>& destination);

  private:
    // On the I/O thread, like what follows.
    void networkChanged();
    void lookUp(const std::shared_ptr<Destination>& destination, int attempt);
    void onAddresses(const std::shared_ptr<Destination>& destination, const Destination::Addresses& found,
                     int attempt);

    std::vector<std::weak_ptr<Destination>> m_destinations;
    HostLookup m_lookup;
    NetworkChanges m_changes{m_io, [this] { networkChanged(); }};
    IoThread m_io{"kestrin routes"}; ///< last: its destruction waits for all that is posted
};

} // namespace kestrin::gtk
