#include "camera/CountingSemaphore.h"

namespace kestrin {

void CountingSemaphore::signal() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
    }
    m_signalled.notify_one();
}

void CountingSemaphore::wait() {
    std::unique_lock lock(m_mutex);
    m_signalled.wait(lock, [this] { return m_count > 0; });
    --m_count;
}

bool CountingSemaphore::waitFor(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    if (!m_signalled.wait_for(lock, limit, [this] { return m_count > 0; }))
        return false;
    --m_count;
    return true;
}

} // namespace kestrin
