#include "linux/reachability/ReachabilityLoop.h"

namespace kestrin::gtk {

namespace {

// A name often cannot be looked up yet when a route is new.
constexpr unsigned kFirstPause = 1000; // milliseconds; each further one is twice as long
constexpr int kAttempts = 5;

} // namespace

ReachabilityLoop::ReachabilityLoop() {
    m_io.post([this] { m_changes.listen(); });
}

ReachabilityLoop::~ReachabilityLoop() {
    m_io.post([this] { m_lookup.stop([this] { m_io.quit(); }); });
}

void ReachabilityLoop::add(const std::shared_ptr<Destination>& destination) {
    m_io.post([this, added = std::weak_ptr(destination)] {
        m_destinations.push_back(added);
        if (const auto there = added.lock())
            lookUp(there, 0);
    });
}

void ReachabilityLoop::wake(const std::shared_ptr<Destination>& destination) {
    m_io.post([woken = std::weak_ptr(destination)] {
        if (const auto there = woken.lock())
            there->tell();
    });
}

void ReachabilityLoop::networkChanged() {
    std::erase_if(m_destinations, [](const auto& each) { return each.expired(); });
    for (const auto& each : m_destinations)
        if (const auto there = each.lock()) {
            // With the addresses known so far, as looking up may take its time.
            there->tell();
            lookUp(there, 0);
        }
}

void ReachabilityLoop::lookUp(const std::shared_ptr<Destination>& destination, int attempt) {
    if (destination->host().empty())
        return;
    const auto number = ++destination->lookUps;
    m_lookup.run(destination->host(),
                 [this, asked = std::weak_ptr(destination), number, attempt](const auto& found) {
                     if (const auto there = asked.lock(); there && there->lookUps == number)
                         onAddresses(there, found, attempt);
                 });
}

void ReachabilityLoop::onAddresses(const std::shared_ptr<Destination>& destination,
                                   const Destination::Addresses& found, int attempt) {
    destination->found(found);
    destination->tell();
    if (!found.empty() || attempt + 1 == kAttempts)
        return;
    m_io.postAfter(kFirstPause << unsigned(attempt),
                   [this, asked = std::weak_ptr(destination), number = destination->lookUps, attempt] {
                       if (const auto there = asked.lock(); there && there->lookUps == number)
                           lookUp(there, attempt + 1);
                   });
}

} // namespace kestrin::gtk
