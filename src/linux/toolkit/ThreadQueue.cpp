#include "linux/toolkit/ThreadQueue.h"

#include "linux/toolkit/RunTask.h"
#include "linux/toolkit/ThreadName.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace kestrin::gtk {

struct ThreadQueue::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<platform::Task> tasks; // guarded
    bool ended = false;               // guarded

    bool take(platform::Task& task) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return ended || !tasks.empty(); });
        if (tasks.empty())
            return false;
        task = std::move(tasks.front());
        tasks.pop_front();
        return true;
    }
};

ThreadQueue::ThreadQueue(const std::string& label, std::shared_ptr<platform::LogSink> log)
    : m_state(std::make_shared<State>()) {
    // Detached: the queue may be destroyed inside one of its own tasks, and main must not wait for it.
    std::thread([state = m_state, log = std::move(log), label] {
        nameThread(label);
        platform::Task task;
        while (state->take(task)) {
            runTask(task, *log);
            task = nullptr;
        }
    }).detach();
}

ThreadQueue::~ThreadQueue() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->ended = true;
    }
    m_state->changed.notify_one();
}

// The task may destroy the queue before this returns.
void ThreadQueue::async(platform::Task task) {
    const auto state = m_state;
    {
        const std::lock_guard lock(state->mutex);
        state->tasks.push_back(std::move(task));
    }
    state->changed.notify_one();
}

} // namespace kestrin::gtk
