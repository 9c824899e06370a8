#include "linux/network/IoThread.h"

#include "linux/toolkit/ThreadName.h"

#include <utility>

namespace kestrin::gtk {

IoThread::IoThread()
    : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context, false)),
      m_thread([this] { run(); }) {}

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
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer self) -> gboolean {
            static_cast<IoThread*>(self)->runOne();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(source, m_context);
    g_source_unref(source);
}

void IoThread::run() {
    nameThread("kestrin network");
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
