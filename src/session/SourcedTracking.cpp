#include "session/SourcedTracking.h"

#include <algorithm>
#include <utility>

namespace kestrin::session {

namespace {

SessionOptions checked(SessionOptions options) {
    options.buffers = std::clamp(options.buffers, 2, 64);
    return options;
}

} // namespace

SourcedTracking::SourcedTracking(SessionOptions options) : m_options(checked(std::move(options))) {}

std::shared_ptr<platform::ArSession> SourcedTracking::makeSession() {
    auto session = std::make_shared<SourcedSession>(makeSource(), m_options);
    const std::lock_guard lock(m_mutex);
    m_newest = session;
    return session;
}

std::shared_ptr<SourcedSession> SourcedTracking::newest() const {
    const std::lock_guard lock(m_mutex);
    return m_newest.lock();
}

bool SourcedTracking::step(double timeoutSeconds) const {
    const auto session = newest();
    return session && session->step(timeoutSeconds);
}

bool SourcedTracking::hasEnded() const {
    const auto session = newest();
    return session && session->hasEnded();
}

std::uint64_t SourcedTracking::frames() const {
    const auto session = newest();
    return session ? session->frames() : 0;
}

} // namespace kestrin::session
