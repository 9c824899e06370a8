#pragma once

#include <functional>
#include <memory>
#include <string>

namespace kestrin::platform {

using Task = std::function<void()>;

/// A queue that runs its tasks one after the other, in order, on some thread. Its destruction lets the tasks
/// already posted finish.
class SerialQueue {
  public:
    virtual ~SerialQueue() = default;
    virtual void async(Task task) = 0;
};

/// Fires until it is destroyed, which may happen inside its own task.
class RepeatingTimer {
  public:
    virtual ~RepeatingTimer() = default;
};

/// Where work runs. Thread: any. A task owns what it uses; an exception that leaves a task is logged and ends
/// that task only.
class Dispatch {
  public:
    virtual ~Dispatch() = default;
    virtual bool isMain() const = 0;
    /// Runs on main, in the order of posting, never inside the call.
    virtual void mainAsync(Task task) = 0;
    /// Runs on main after at least `seconds`.
    virtual void mainAfter(double seconds, Task task) = 0;
    /// Runs on a worker; tasks run side by side.
    virtual void globalAsync(Task task) = 0;
    virtual std::unique_ptr<SerialQueue> makeSerialQueue(const std::string& label) = 0;
    /// Runs on main every `seconds`, first after one period.
    virtual std::unique_ptr<RepeatingTimer> every(double seconds, Task task) = 0;
    /// Seconds since some fixed moment; never goes back.
    virtual double now() const = 0;
};

} // namespace kestrin::platform
