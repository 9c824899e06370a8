#include "linux/reachability/Destination.h"

#include <utility>

namespace kestrin::gtk {

using platform::ReachabilityFlags;

void Destination::found(Addresses addresses) {
    const std::lock_guard lock(m_mutex);
    if (!m_addresses || !addresses.empty())
        m_addresses = std::move(addresses);
}

std::optional<Destination::Addresses> Destination::addresses() const {
    const std::lock_guard lock(m_mutex);
    return m_addresses;
}

std::optional<ReachabilityFlags> Destination::flags() const {
    const auto known = addresses();
    if (!known)
        return m_paths->find(platform::kInternet);
    std::optional<ReachabilityFlags> flags = 0;
    for (const auto& address : *known)
        if ((flags = m_paths->find(address)) != 0)
            break;
    return flags;
}

void Destination::start(platform::SerialQueue& queue, platform::ReachabilityTarget::Changed changed) {
    const std::lock_guard lock(m_mutex);
    m_queue = &queue;
    m_changed = std::move(changed);
    m_told.reset();
}

void Destination::stop() {
    platform::ReachabilityTarget::Changed dropped; // outside the lock
    const std::lock_guard lock(m_mutex);
    m_queue = nullptr;
    dropped.swap(m_changed);
}

void Destination::tell() {
    if (!addresses())
        return;
    const ReachabilityFlags present = flags().value_or(0);
    const std::lock_guard lock(m_mutex);
    if (!m_queue || m_told == present)
        return;
    m_told = present;
    m_queue->async([changed = m_changed, present] { changed(present); });
}

} // namespace kestrin::gtk
