#include "linux/network/IoThread.h"

#include "linux/toolkit/ThreadName.h"

#include <utility>

namespace kestrin::gtk {

IoThread::IoThread(const char* name)
    : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context, false)),
      m_thread([this, name] { run(name); }) {}

IoThread::~IoThread() {
    m_thread.join();
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void IoThread::post(platform::Task task) {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    const auto fire = [](gpointer self) -> gboolean {
        static_cast<IoThread*>(self)->runOne();
        return G_SOURCE_REMOVE;
    };
    attach(g_idle_source_new(), fire, this, nullptr);
}

void IoThread::postAfter(unsigned milliseconds, platform::Task task) {
    const auto fire = [](gpointer data) -> gboolean {
        (*static_cast<platform::Task*>(data))();
        return G_SOURCE_REMOVE;
    };
    const auto done = [](gpointer data) { delete static_cast<platform::Task*>(data); };
    attach(g_timeout_source_new(milliseconds), fire, new platform::Task(std::move(task)), done);
}

void IoThread::attach(GSource* source, GSourceFunc fire, gpointer data, GDestroyNotify done) {
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, fire, data, done);
    g_source_attach(source, m_context);
    g_source_unref(source);
}

void IoThread::run(const char* name) {
    nameThread(name);
    g_main_context_push_thread_default(m_context);
    g_main_loop_run(m_loop);
    g_main_context_pop_thread_default(m_context);
}

void IoThread::runOne() {
    platform::Task task;
    {
        const std::lock_guard lock(m_mutex);
        task = std::move(m_tasks.front());
        m_tasks.pop_front();
    }
    task();
}

} // namespace kestrin::gtk
