#include "linux/WindowManager.h"

#include "linux/toolkit/GRef.h"

#include <gdk/x11/gdkx.h>
#include <gio/gio.h>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>

namespace kestrin::test {

namespace {

// GDK's own headers call it outdated without naming a successor.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
bool isManaged() {
    GdkX11Screen* screen = gdk_x11_display_get_screen(gdk_display_get_default());
    while (g_main_context_iteration(nullptr, false)) {
    }
    return gdk_x11_screen_get_window_manager_name(screen) == std::string("Openbox");
}
G_GNUC_END_IGNORE_DEPRECATIONS

class WindowManager {
  public:
    WindowManager();
    ~WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

  private:
    gtk::GRef<GSubprocess> m_process;
};

WindowManager::WindowManager() {
    gtk::GFailure failure;
    m_process = gtk::GRef<GSubprocess>::adopt(g_subprocess_new(
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDERR_SILENCE | G_SUBPROCESS_FLAGS_STDOUT_SILENCE),
        failure.out(), "openbox", "--sm-disable", nullptr));
    if (!m_process)
        throw std::runtime_error(failure.text());
    for (int tries = 0; !isManaged(); ++tries) {
        if (tries == 500)
            throw std::runtime_error("the window manager does not start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

WindowManager::~WindowManager() {
    g_subprocess_send_signal(m_process.get(), SIGTERM);
    g_subprocess_wait(m_process.get(), nullptr, nullptr);
}

} // namespace

void needWindowManager() { static const WindowManager manager; }

} // namespace kestrin::test
