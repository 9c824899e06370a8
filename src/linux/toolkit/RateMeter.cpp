#include "linux/toolkit/RateMeter.h"

#include "linux/toolkit/DebugTopics.h"

#include <utility>

namespace kestrin::gtk {

void RateMeter::count() {
    if (!isDebugged(Topic::rates))
        return;
    const auto now = Clock::now();
    if (m_since == Clock::time_point())
        m_since = now;
    ++m_count;
    const auto past = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_since).count();
    if (past < 1000)
        return;
    debugLine(Topic::rates, std::string(m_what) + ": " + std::to_string(std::exchange(m_count, 0)) + " in " +
                                std::to_string(past) + " ms");
    m_since = now;
}

} // namespace kestrin::gtk
