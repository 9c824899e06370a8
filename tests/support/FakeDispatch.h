#pragma once

#include "platform/Dispatch.h"
#include "platform/Log.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kestrin::test {

/// A main queue and a clock turned by hand. Main is the thread that made it. Worker tasks and the tasks of
/// serial queues wait in one list, run by `runWorkers` or, once asked for, by a thread of their own.
class FakeDispatch : public platform::Dispatch {
  public:
    explicit FakeDispatch(platform::LogSink& log);
    ~FakeDispatch() override;

    bool isMain() const override;
    void mainAsync(platform::Task task) override;
    void mainAfter(double seconds, platform::Task task) override;
    void globalAsync(platform::Task task) override;
    std::unique_ptr<platform::SerialQueue> makeSerialQueue(const std::string& label) override;
    std::unique_ptr<platform::RepeatingTimer> every(double seconds, platform::Task task) override;
    double now() const override;

    /// Runs what was posted to main, and what that posts, until nothing is left.
    void runMain();
    /// Runs only the oldest post; false when there is none.
    bool runOneMain();
    /// Runs main, then moves the clock, running what falls due on the way at its own moment.
    void advance(double seconds);
    /// Runs the waiting worker tasks, and what they add, off main; returns when they are done.
    void runWorkers();
    std::size_t waitingWorkerTasks() const;
    /// From now on worker tasks run on threads of their own as they come, side by side if there are several.
    void startWorkerThreads(int count);
    /// Waits until those threads have nothing to do.
    void waitForWorkers();
    /// Forgets all that waits, main and worker tasks alike.
    void drop();

  private:
    struct Timer;
    struct TimerHandle;
    struct Queue;
    void run(const platform::Task& task);
    bool runOneWorker();
    std::shared_ptr<Timer> takeDue(double until);
    void workerLoop();

    platform::LogSink& m_log;
    const std::thread::id m_main = std::this_thread::get_id();
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<platform::Task> m_mainTasks, m_workerTasks;
    std::vector<std::weak_ptr<Timer>> m_timers;
    std::vector<std::shared_ptr<Timer>> m_delayed;
    double m_now = 0;
    int m_busyWorkers = 0;
    bool m_stop = false;
    std::vector<std::thread> m_workers;
};

/// Runs `task` to its end on another thread.
void offMain(const platform::Task& task);

} // namespace kestrin::test
