#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "platform/Dispatch.h"
#include "platform/NotificationCenter.h"

#include <gtk/gtk.h>

#include <map>
#include <memory>
#include <vector>

namespace kestrin::gtk {

/// Tells the notification centre whether the application is active and whether it can be seen, over all its
/// windows. A change is told once it has lasted for a moment, so that focus that goes from one window of the
/// application to another, such as its own alert, is no change. Thread: main.
class Activity : public std::enable_shared_from_this<Activity> {
  public:
    static std::shared_ptr<Activity> make(platform::Dispatch& dispatch, platform::NotificationCenter& center);
    ~Activity();

    /// Runs the task, later, once the application is active and that has been told, but after some seconds in
    /// any case.
    void whenActive(platform::Task task);
    /// The application ends: tells what is still untold, then that, once.
    void terminate();

  private:
    class Watch;

    Activity(platform::Dispatch& dispatch, platform::NotificationCenter& center);
    void start();
    void windowsChanged();
    void settleSoon();
    void settleAfter(double seconds);
    void settle();
    void goOn();

    platform::Dispatch& m_dispatch;
    platform::NotificationCenter& m_center;
    SignalHandler m_windowsChanged, m_shutdown;
    std::map<GtkWindow*, std::unique_ptr<Watch>> m_watches;
    std::vector<platform::Task> m_afterwards; ///< wait for the application to be active
    double m_lastChange = 0;                  ///< on the dispatch's clock
    bool m_isActive = false, m_isVisible = false, m_isSettling = false, m_isTerminated = false;
};

} // namespace kestrin::gtk
