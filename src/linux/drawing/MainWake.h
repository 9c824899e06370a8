#pragma once

#include <glib.h>

#include <functional>

namespace kestrin::gtk {

/// Calls back on main soon after it was woken, once for any number of wakes, before the next layout. Made and
/// destroyed on main.
class MainWake {
  public:
    explicit MainWake(std::function<void()> callback);
    ~MainWake();
    MainWake(const MainWake&) = delete;
    MainWake& operator=(const MainWake&) = delete;

    /// Thread: any.
    void wake() { g_source_set_ready_time(m_source, 0); }

  private:
    const std::function<void()> m_callback;
    GSource* const m_source;
};

} // namespace kestrin::gtk
