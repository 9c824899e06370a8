#pragma once

#include "platform/Dispatch.h"
#include "platform/Log.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrin::gtk {

/// The global concurrent queue: threads that are started when they are needed, up to a small number, as tasks
/// may block on the network. Destruction drops what has not begun and waits for the rest. Thread: any.
class WorkerPool {
  public:
    explicit WorkerPool(std::shared_ptr<platform::LogSink> log) : m_log(std::move(log)) {}
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void post(platform::Task task);

  private:
    void work();
    bool take(platform::Task& task);

    const std::shared_ptr<platform::LogSink> m_log;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<platform::Task> m_tasks; // guarded
    std::vector<std::thread> m_threads; // guarded
    std::size_t m_idle = 0;             // guarded
    bool m_ended = false;               // guarded
};

} // namespace kestrin::gtk
