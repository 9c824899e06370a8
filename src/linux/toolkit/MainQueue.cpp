#include "linux/toolkit/MainQueue.h"

#include "linux/toolkit/RunTask.h"

#include <glib.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <new>
#include <utility>

namespace kestrin::gtk {

namespace {

using Clock = std::chrono::steady_clock;
using platform::Task;

// A quarter of a frame at 60 frames a second.
constexpr std::chrono::milliseconds kBudget(4);
// Whoever else is busy without end does not stop the queue for longer.
constexpr std::chrono::milliseconds kLongestPause(20);
// Just below that of the toolkit's redraw, which is below that of events, layout and of this queue.
constexpr int kPausePriority = G_PRIORITY_HIGH_IDLE + 21;
constexpr double kLongestDelay = 1e8; // seconds; what is longer does not fit the clock

Clock::duration bounded(double seconds) {
    const double delay = seconds > 0 ? (seconds < kLongestDelay ? seconds : kLongestDelay) : 0;
    return std::chrono::ceil<Clock::duration>(std::chrono::duration<double>(delay));
}

} // namespace

struct MainQueue::State {
    std::mutex mutex;
    std::deque<Task> ready;                         // guarded
    std::multimap<Clock::time_point, Task> delayed; // guarded
    std::shared_ptr<platform::LogSink> log;
    GSource* source = nullptr;
    // The budget is used up, and the rest of the main loop comes first. Main only.
    Clock::time_point pauseEnds{};
    unsigned pause = 0;

    /// Whether there is something to run; else how long to sleep, in milliseconds, -1 without end.
    bool isReady(int& sleep) {
        const std::lock_guard lock(mutex);
        const auto now = Clock::now();
        while (!delayed.empty() && delayed.begin()->first <= now) {
            ready.push_back(std::move(delayed.begin()->second));
            delayed.erase(delayed.begin());
        }
        sleep = -1;
        if (!delayed.empty()) {
            const auto wait = std::chrono::ceil<std::chrono::milliseconds>(delayed.begin()->first - now);
            sleep = int(std::min<long long>(wait.count(), G_MAXINT));
        }
        return !ready.empty();
    }

    bool take(Task& task) {
        const std::lock_guard lock(mutex);
        if (ready.empty())
            return false;
        task = std::move(ready.front());
        ready.pop_front();
        return true;
    }

    bool isPaused() const { return pause != 0 && Clock::now() < pauseEnds; }

    /// Runs nothing until the main loop has come down to below the redraw's priority.
    void pauseIfMore() {
        const std::lock_guard lock(mutex);
        if (ready.empty() || pause != 0)
            return;
        const auto end = [](gpointer self) -> gboolean {
            static_cast<State*>(self)->pause = 0;
            return G_SOURCE_REMOVE;
        };
        pauseEnds = Clock::now() + kLongestPause;
        pause = g_idle_add_full(kPausePriority, end, this, nullptr);
    }

    void endPause() {
        if (pause != 0)
            g_source_remove(std::exchange(pause, 0U));
    }

    void run() {
        endPause();
        const auto end = Clock::now() + kBudget;
        Task task;
        while (Clock::now() < end && take(task)) {
            runTask(task, *log);
            task = nullptr;
        }
        pauseIfMore();
    }
};

namespace {

struct QueueSource {
    GSource base;
    std::shared_ptr<MainQueue::State> state;
};

QueueSource& self(GSource* source) { return *reinterpret_cast<QueueSource*>(source); }

gboolean prepare(GSource* source, int* timeout) {
    MainQueue::State& state = *self(source).state;
    const bool ready = state.isReady(*timeout);
    if (!ready || !state.isPaused())
        return ready;
    *timeout = int(kLongestPause.count());
    return false;
}

gboolean check(GSource* source) {
    int unused = 0;
    MainQueue::State& state = *self(source).state;
    return state.isReady(unused) && !state.isPaused();
}

gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    const auto state = self(source).state; // the queue may be destroyed by one of its tasks
    state->run();
    return G_SOURCE_CONTINUE;
}

void finalize(GSource* source) { self(source).state.~shared_ptr(); }

GSourceFuncs functions{prepare, check, dispatch, finalize, nullptr, nullptr};

} // namespace

MainQueue::MainQueue(std::shared_ptr<platform::LogSink> log) : m_state(std::make_shared<State>()) {
    m_state->log = std::move(log);
    m_state->source = g_source_new(&functions, sizeof(QueueSource));
    new (&self(m_state->source).state) std::shared_ptr<State>(m_state);
    g_source_set_static_name(m_state->source, "Kestrin main queue");
    g_source_attach(m_state->source, nullptr);
}

MainQueue::~MainQueue() {
    std::deque<Task> ready;
    std::multimap<Clock::time_point, Task> delayed;
    {
        const std::lock_guard lock(m_state->mutex);
        ready.swap(m_state->ready);
        delayed.swap(m_state->delayed);
    }
    m_state->endPause();
    g_source_destroy(m_state->source);
    g_source_unref(m_state->source);
}

void MainQueue::post(Task task) {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->ready.push_back(std::move(task));
        if (m_state->ready.size() > 1)
            return;
    }
    wake();
}

void MainQueue::postAfter(double seconds, Task task) {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->delayed.emplace(Clock::now() + bounded(seconds), std::move(task));
    }
    wake();
}

void MainQueue::wake() const { g_main_context_wakeup(nullptr); }

} // namespace kestrin::gtk
