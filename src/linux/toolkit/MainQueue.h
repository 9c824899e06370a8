#pragma once

#include "platform/Dispatch.h"
#include "platform/Log.h"

#include <memory>

namespace kestrin::gtk {

/// The main queue: one source of default priority on the default GLib main context. It runs its tasks in
/// order, and after a few milliseconds of them lets the rest of the main loop have a turn: a flood of tasks
/// never starves redraws. Closures are handed over under a mutex of its own. Thread: any, but made and
/// destroyed on main; tasks that have not run by then are dropped.
class MainQueue {
  public:
    explicit MainQueue(std::shared_ptr<platform::LogSink> log);
    ~MainQueue();
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    void post(platform::Task task);
    /// Joins the end of the queue when `seconds` are over.
    void postAfter(double seconds, platform::Task task);

    struct State;

  private:
    void wake() const;

    std::shared_ptr<State> m_state;
};

} // namespace kestrin::gtk
