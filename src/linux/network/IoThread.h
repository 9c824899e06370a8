#pragma once

#include "platform/Dispatch.h"

#include <glib.h>

#include <deque>
#include <mutex>
#include <thread>

namespace kestrin::gtk {

/// A thread with a main context of its own, on which all network objects live. Its context is the default one
/// of the thread, so that asynchronous operations begun there also end there.
class IoThread {
  public:
    explicit IoThread(const char* name = "kestrin network");
    /// Runs what is posted until `quit` was called; joins.
    ~IoThread();
    IoThread(const IoThread&) = delete;
    IoThread& operator=(const IoThread&) = delete;

    /// Runs on the I/O thread, in order. Thread: any.
    void post(platform::Task task);
    /// The same once, after that time. Thread: the I/O thread.
    void postAfter(unsigned milliseconds, platform::Task task);
    /// Ends the loop after the present task. Thread: the I/O thread.
    void quit() { g_main_loop_quit(m_loop); }

  private:
    void run(const char* name);
    void attach(GSource* source, GSourceFunc fire, gpointer data, GDestroyNotify done);
    void runOne();

    GMainContext* m_context;
    GMainLoop* m_loop;
    std::mutex m_mutex;
    std::deque<platform::Task> m_tasks;
    std::thread m_thread;
};

} // namespace kestrin::gtk
