#include "support/FakeDispatch.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace kestrin::test {

namespace {
constexpr double kRounding = 1e-9; // seconds; sums of decimal steps do not quite meet
}

/// Due at `began + fired * period`.
struct FakeDispatch::Timer {
    double began, period;
    platform::Task task;
    bool repeats;
    int fired = 1;
    double due() const { return began + fired * period; }
};

struct FakeDispatch::TimerHandle : platform::RepeatingTimer {
    explicit TimerHandle(std::shared_ptr<Timer> t) : timer(std::move(t)) {}
    std::shared_ptr<Timer> timer;
};

struct FakeDispatch::Queue : platform::SerialQueue {
    explicit Queue(FakeDispatch& d) : dispatch(d) {}
    void async(platform::Task task) override { dispatch.globalAsync(std::move(task)); }
    FakeDispatch& dispatch;
};

FakeDispatch::FakeDispatch(platform::LogSink& log) : m_log(log) {}

FakeDispatch::~FakeDispatch() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    for (std::thread& worker : m_workers)
        worker.join();
}

bool FakeDispatch::isMain() const { return std::this_thread::get_id() == m_main; }

void FakeDispatch::mainAsync(platform::Task task) {
    const std::lock_guard lock(m_mutex);
    m_mainTasks.push_back(std::move(task));
}

void FakeDispatch::mainAfter(double seconds, platform::Task task) {
    const std::lock_guard lock(m_mutex);
    m_delayed.push_back(std::make_shared<Timer>(Timer{m_now, seconds, std::move(task), false}));
    m_timers.push_back(m_delayed.back());
}

void FakeDispatch::globalAsync(platform::Task task) {
    {
        const std::lock_guard lock(m_mutex);
        m_workerTasks.push_back(std::move(task));
    }
    m_changed.notify_all();
}

std::unique_ptr<platform::SerialQueue> FakeDispatch::makeSerialQueue(const std::string&) {
    return std::make_unique<Queue>(*this);
}

std::unique_ptr<platform::RepeatingTimer> FakeDispatch::every(double seconds, platform::Task task) {
    const std::lock_guard lock(m_mutex);
    auto timer = std::make_shared<Timer>(Timer{m_now, seconds, std::move(task), true});
    m_timers.push_back(timer);
    return std::make_unique<TimerHandle>(std::move(timer));
}

double FakeDispatch::now() const {
    const std::lock_guard lock(m_mutex);
    return m_now;
}

void FakeDispatch::run(const platform::Task& task) {
    try {
        task();
    } catch (const std::exception& error) {
        m_log.write(error.what());
    }
}

bool FakeDispatch::runOneMain() {
    std::unique_lock lock(m_mutex);
    if (m_mainTasks.empty())
        return false;
    const platform::Task task = std::move(m_mainTasks.front());
    m_mainTasks.pop_front();
    lock.unlock();
    run(task);
    return true;
}

void FakeDispatch::runMain() {
    while (runOneMain()) {
    }
}

std::shared_ptr<FakeDispatch::Timer> FakeDispatch::takeDue(double until) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_timers, [](const auto& timer) { return timer.expired(); });
    std::shared_ptr<Timer> next;
    for (const auto& weak : m_timers) {
        const auto timer = weak.lock();
        if (timer && timer->due() <= until + kRounding && (!next || timer->due() < next->due()))
            next = timer;
    }
    if (!next)
        return nullptr;
    m_now = std::max(m_now, next->due());
    ++next->fired;
    if (!next->repeats)
        std::erase(m_delayed, next);
    return next;
}

void FakeDispatch::advance(double seconds) {
    runMain();
    const double until = now() + seconds;
    while (const auto timer = takeDue(until)) {
        run(timer->task);
        runMain();
    }
    const std::lock_guard lock(m_mutex);
    m_now = std::max(m_now, until);
}

bool FakeDispatch::runOneWorker() {
    std::unique_lock lock(m_mutex);
    if (m_workerTasks.empty())
        return false;
    {
        const platform::Task task = std::move(m_workerTasks.front());
        m_workerTasks.pop_front();
        ++m_busyWorkers;
        lock.unlock();
        run(task);
    }
    lock.lock();
    --m_busyWorkers;
    return true;
}

void FakeDispatch::runWorkers() {
    offMain([this] {
        while (runOneWorker()) {
        }
    });
}

std::size_t FakeDispatch::waitingWorkerTasks() const {
    const std::lock_guard lock(m_mutex);
    return m_workerTasks.size();
}

void FakeDispatch::startWorkerThreads(int count) {
    for (int i = 0; i < count; ++i)
        m_workers.emplace_back([this] { workerLoop(); });
}

void FakeDispatch::workerLoop() {
    while (true) {
        while (runOneWorker()) {
        }
        std::unique_lock lock(m_mutex);
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_stop || !m_workerTasks.empty(); });
        if (m_stop)
            return;
    }
}

void FakeDispatch::waitForWorkers() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_workerTasks.empty() && m_busyWorkers == 0; });
}

void FakeDispatch::drop() {
    // What a dropped task owned may post as it goes.
    while (true) {
        std::unique_lock lock(m_mutex);
        const auto mainTasks = std::exchange(m_mainTasks, {});
        const auto workerTasks = std::exchange(m_workerTasks, {});
        const auto delayed = std::exchange(m_delayed, {});
        lock.unlock();
        if (mainTasks.empty() && workerTasks.empty() && delayed.empty())
            return;
    }
}

void offMain(const platform::Task& task) { std::thread(task).join(); }

} // namespace kestrin::test
