#include "linux/capture/DeviceWatch.h"

#include <utility>

namespace kestrin::gtk {

DeviceWatch::DeviceWatch(std::function<void()> changed) : m_changed(std::move(changed)) {
    const auto folder = GRef<GFile>::adopt(g_file_new_for_path("/dev"));
    m_monitor = GRef<GFileMonitor>::adopt(
        g_file_monitor_directory(folder.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
    if (m_monitor)
        g_signal_connect(m_monitor.get(), "changed", G_CALLBACK(onChange), this);
}

DeviceWatch::~DeviceWatch() {
    if (!m_monitor)
        return;
    g_signal_handlers_disconnect_by_data(m_monitor.get(), this);
    g_file_monitor_cancel(m_monitor.get());
}

void DeviceWatch::onChange(GFileMonitor*, GFile* file, GFile*, GFileMonitorEvent, gpointer self) {
    const GText name(g_file_get_basename(file));
    if (g_str_has_prefix(name.get(), "video"))
        static_cast<DeviceWatch*>(self)->m_changed();
}

} // namespace kestrin::gtk
