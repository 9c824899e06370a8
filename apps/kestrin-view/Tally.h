#pragma once

#include <boost/json/fwd.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace kestrin::view {

/// Counts what the page says it received and drew, from its "onWebUpdate" events. Thread: main.
class Tally {
  public:
    /// Takes over what one event says; an event without counts is ignored.
    void update(const boost::json::object& event);
    std::int64_t poses() const { return m_poses; }
    /// One line: `frames` of the session, poses received by a page that reports them, milliseconds.
    std::string summary(std::int64_t frames) const;

  private:
    using Clock = std::chrono::steady_clock;

    double milliseconds(Clock::time_point until) const;

    Clock::time_point m_began = Clock::now();
    std::optional<Clock::time_point> m_firstPose;
    std::int64_t m_poses = 0, m_rendered = 0;
};

} // namespace kestrin::view
