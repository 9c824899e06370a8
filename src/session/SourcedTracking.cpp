#include "session/SourcedTracking.h"

#include <utility>

namespace kestrin::session {

SourcedTracking::SourcedTracking(SessionOptions options) : m_options(std::move(options)) {}

std::shared_ptr<platform::ArSession> SourcedTracking::makeSession() {
    auto session = std::make_shared<SourcedSession>(makeSource(), m_options);
    const std::lock_guard lock(m_mutex);
    m_newest = session;
    return session;
}

bool SourcedTracking::step(double timeoutSeconds) const {
    std::shared_ptr<SourcedSession> session;
    {
        const std::lock_guard lock(m_mutex);
        session = m_newest.lock();
    }
    return session && session->step(timeoutSeconds);
}

} // namespace kestrin::session
