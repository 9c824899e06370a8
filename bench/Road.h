#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

namespace kestrin::bench {

/// A way for numbered frames to a page and back, walked by one thread; the page answers each frame with its
/// number, seen on main.
class Road {
  public:
    using Clock = std::chrono::steady_clock;

    explicit Road(std::function<void(int frame)> send) : m_send(std::move(send)) {}

    /// The page has answered. Thread: main.
    void answered(double frame);

    /// Sends so many frames, each when the one before has come back. The microseconds that each took.
    std::vector<double> pingPong(int frames);
    /// Sends so many frames at once, and waits for the last one.
    void flood(int frames);

    int sent() const { return m_next; }
    /// Frames that never came back.
    int lost() const;
    /// Answers that came after that to a later frame, or twice.
    int disordered() const;

  private:
    /// False when the answer is not there within five seconds.
    bool waitFor(int frame, Clock::time_point& seen);

    const std::function<void(int)> m_send;
    int m_next = 0; ///< of the walking thread
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded.
    double m_newest = -1;
    Clock::time_point m_seen;
    int m_answers = 0, m_disordered = 0;
};

} // namespace kestrin::bench
