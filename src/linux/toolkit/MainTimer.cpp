#include "linux/toolkit/MainTimer.h"

#include <chrono>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr double kShortestPeriod = 0.001; // seconds

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

class MainTimer::Schedule : public std::enable_shared_from_this<Schedule> {
  public:
    Schedule(std::weak_ptr<MainQueue> queue, double seconds, platform::Task task)
        : m_queue(std::move(queue)), m_period(seconds > kShortestPeriod ? seconds : kShortestPeriod),
          m_due(now()), m_task(std::move(task)) {}

    void arm() {
        const double present = now();
        m_due += m_period;
        if (m_due < present)
            m_due = present + m_period;
        if (const auto queue = m_queue.lock())
            queue->postAfter(m_due - present, [weak = weak_from_this()] {
                if (const auto self = weak.lock())
                    self->fire();
            });
    }

  private:
    /// Armed first: an exception that leaves the task does not end the timer.
    void fire() {
        arm();
        m_task();
    }

    const std::weak_ptr<MainQueue> m_queue;
    const double m_period;
    double m_due;
    const platform::Task m_task;
};

MainTimer::MainTimer(std::weak_ptr<MainQueue> queue, double seconds, platform::Task task)
    : m_schedule(std::make_shared<Schedule>(std::move(queue), seconds, std::move(task))) {
    m_schedule->arm();
}

} // namespace kestrin::gtk
