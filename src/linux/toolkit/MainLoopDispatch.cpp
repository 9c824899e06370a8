#include "linux/toolkit/MainLoopDispatch.h"

#include "linux/toolkit/MainTimer.h"
#include "linux/toolkit/ThreadQueue.h"

#include <chrono>
#include <utility>

namespace kestrin::gtk {

MainLoopDispatch::MainLoopDispatch(std::shared_ptr<platform::LogSink> log)
    : m_log(std::move(log)), m_queue(std::make_shared<MainQueue>(m_log)), m_workers(m_log) {}

bool MainLoopDispatch::isMain() const { return std::this_thread::get_id() == m_main; }

void MainLoopDispatch::mainAsync(platform::Task task) { m_queue->post(std::move(task)); }

void MainLoopDispatch::mainAfter(double seconds, platform::Task task) {
    m_queue->postAfter(seconds, std::move(task));
}

void MainLoopDispatch::globalAsync(platform::Task task) { m_workers.post(std::move(task)); }

std::unique_ptr<platform::SerialQueue> MainLoopDispatch::makeSerialQueue(const std::string& label) {
    return std::make_unique<ThreadQueue>(label, m_log);
}

std::unique_ptr<platform::RepeatingTimer> MainLoopDispatch::every(double seconds, platform::Task task) {
    return std::make_unique<MainTimer>(m_queue, seconds, std::move(task));
}

double MainLoopDispatch::now() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace kestrin::gtk
