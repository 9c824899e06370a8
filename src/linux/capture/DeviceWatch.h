#pragma once

#include "linux/toolkit/GRef.h"

#include <gio/gio.h>

#include <functional>

namespace kestrin::gtk {

/// Tells of cameras that the kernel gets and loses, by their device files. Thread: main.
class DeviceWatch {
  public:
    /// `changed` may come several times for one camera.
    explicit DeviceWatch(std::function<void()> changed);
    ~DeviceWatch();
    DeviceWatch(const DeviceWatch&) = delete;
    DeviceWatch& operator=(const DeviceWatch&) = delete;

  private:
    static void onChange(GFileMonitor*, GFile* file, GFile*, GFileMonitorEvent, gpointer self);

    const std::function<void()> m_changed;
    GRef<GFileMonitor> m_monitor; ///< empty where folders cannot be watched
};

} // namespace kestrin::gtk
