#include "Road.h"

namespace kestrin::bench {

using namespace std::chrono_literals;

void Road::answered(double frame) {
    const auto now = Clock::now();
    const std::lock_guard lock(m_mutex);
    ++m_answers;
    if (frame <= m_newest) {
        ++m_disordered;
        return;
    }
    m_newest = frame;
    m_seen = now;
    m_changed.notify_one();
}

std::vector<double> Road::pingPong(int frames) {
    std::vector<double> microseconds;
    for (int i = 0; i < frames; ++i) {
        Clock::time_point seen;
        const auto begin = Clock::now();
        m_send(m_next);
        if (waitFor(m_next++, seen))
            microseconds.push_back(std::chrono::duration<double, std::micro>(seen - begin).count());
    }
    return microseconds;
}

void Road::flood(int frames) {
    for (int i = 0; i < frames; ++i)
        m_send(m_next++);
    Clock::time_point seen;
    waitFor(m_next - 1, seen);
}

bool Road::waitFor(int frame, Clock::time_point& seen) {
    std::unique_lock lock(m_mutex);
    const bool came = m_changed.wait_for(lock, 5s, [&] { return m_newest >= frame; });
    seen = m_seen;
    return came;
}

int Road::lost() const {
    const std::lock_guard lock(m_mutex);
    return m_next - (m_answers - m_disordered);
}

int Road::disordered() const {
    const std::lock_guard lock(m_mutex);
    return m_disordered;
}

} // namespace kestrin::bench
