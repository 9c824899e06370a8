#pragma once

#include <chrono>

namespace kestrin::gtk {

/// Says once a second how often something has happened, while the topic "rates" is on. Thread: one at a time.
class RateMeter {
  public:
    /// `what` lives as long as this.
    explicit RateMeter(const char* what) : m_what(what) {}
    void count();

  private:
    using Clock = std::chrono::steady_clock;

    const char* const m_what;
    Clock::time_point m_since{};
    int m_count = 0;
};

} // namespace kestrin::gtk
