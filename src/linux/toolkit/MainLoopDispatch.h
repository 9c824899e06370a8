#pragma once

#include "linux/toolkit/MainQueue.h"
#include "linux/toolkit/WorkerPool.h"

#include <thread>

namespace kestrin::gtk {

/// Queues on the default GLib main context and on threads. Made and destroyed on main.
class MainLoopDispatch final : public platform::Dispatch {
  public:
    explicit MainLoopDispatch(std::shared_ptr<platform::LogSink> log);

    bool isMain() const override;
    void mainAsync(platform::Task task) override;
    void mainAfter(double seconds, platform::Task task) override;
    void globalAsync(platform::Task task) override;
    std::unique_ptr<platform::SerialQueue> makeSerialQueue(const std::string& label) override;
    std::unique_ptr<platform::RepeatingTimer> every(double seconds, platform::Task task) override;
    double now() const override;

  private:
    const std::shared_ptr<platform::LogSink> m_log;
    const std::thread::id m_main = std::this_thread::get_id();
    const std::shared_ptr<MainQueue> m_queue;
    WorkerPool m_workers;
};

} // namespace kestrin::gtk
