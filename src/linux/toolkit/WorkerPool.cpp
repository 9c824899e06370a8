#include "linux/toolkit/WorkerPool.h"

#include "linux/toolkit/RunTask.h"
#include "linux/toolkit/ThreadName.h"

#include <utility>

namespace kestrin::gtk {

namespace {
constexpr std::size_t kMostThreads = 8;
}

WorkerPool::~WorkerPool() {
    std::deque<platform::Task> dropped;
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        dropped.swap(m_tasks);
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void WorkerPool::post(platform::Task task) {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        if (m_tasks.size() > m_idle && m_threads.size() < kMostThreads)
            m_threads.emplace_back([this] { work(); });
    }
    m_changed.notify_one();
}

void WorkerPool::work() {
    nameThread("kestrin worker");
    platform::Task task;
    while (take(task)) {
        runTask(task, *m_log);
        task = nullptr;
    }
}

bool WorkerPool::take(platform::Task& task) {
    std::unique_lock lock(m_mutex);
    ++m_idle;
    m_changed.wait(lock, [this] { return m_ended || !m_tasks.empty(); });
    --m_idle;
    if (m_ended)
        return false;
    task = std::move(m_tasks.front());
    m_tasks.pop_front();
    return true;
}

} // namespace kestrin::gtk
