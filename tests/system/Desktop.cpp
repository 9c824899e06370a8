#include "Desktop.h"

#include "Program.h"

#include <gdk/x11/gdkx.h>

#include <csignal>
#include <stdexcept>
#include <thread>

namespace kestrin::test {

namespace {

std::string idOf(GtkWindow* window) {
    return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window))));
}

} // namespace

WindowManager::WindowManager() {
    m_folder.write("rc.xml", "<openbox_config xmlns=\"http://openbox.org/3.4/rc\"/>");
    std::string program = "openbox", file = "--config-file", name = m_folder / "rc.xml";
    std::string then = "--startup", sayReady = "touch " + (m_folder / "ready").string();
    char* arguments[] = {program.data(), file.data(), name.data(), then.data(), sayReady.data(), nullptr};
    constexpr auto kFlags = GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                                        G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    if (!g_spawn_async(nullptr, arguments, nullptr, kFlags, nullptr, nullptr, &m_process, nullptr))
        throw std::runtime_error("openbox does not start");
    for (int tries = 0; !std::filesystem::exists(m_folder / "ready"); ++tries) {
        if (tries == 400)
            throw std::runtime_error("openbox does not manage the display");
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

WindowManager::~WindowManager() {
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0); // a display takes the next one only when this one is gone
}

OtherWindow::OtherWindow() : m_display(XOpenDisplay(nullptr)) {
    auto* display = static_cast<Display*>(m_display);
    if (!display)
        throw std::runtime_error("there is no display");
    const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 700, 500, 80, 60, 0, 0, 0);
    XMapWindow(display, window);
    XFlush(display);
}

OtherWindow::~OtherWindow() { XCloseDisplay(static_cast<Display*>(m_display)); }

bool xdotool(const std::string& command, GtkWindow* window, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {command, idOf(window)});
    const Outcome outcome = runProgram("xdotool", arguments);
    EXPECT_EQ(outcome.status, 0) << command << ": " << outcome.err;
    return outcome.status == 0;
}

bool clickAt(GtkWindow* window, int x, int y) {
    return runProgram("xdotool", {"mousemove", "--window", idOf(window), std::to_string(x), std::to_string(y),
                                  "click", "1"})
               .status == 0;
}

bool clickOn(GtkWidget* widget) {
    GtkNative* const window = gtk_widget_get_native(widget);
    graphene_point_t middle{float(gtk_widget_get_width(widget)) / 2,
                            float(gtk_widget_get_height(widget)) / 2};
    double left = 0, top = 0; // of the shadow
    gtk_native_get_surface_transform(window, &left, &top);
    return gtk_widget_compute_point(widget, GTK_WIDGET(window), &middle, &middle) &&
           clickAt(GTK_WINDOW(window), int(middle.x + left), int(middle.y + top));
}

bool press(const std::string& key) { return runProgram("xdotool", {"key", key}).status == 0; }

GtkWindow* dialogOver(GtkWindow* window) {
    GListModel* const all = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(all); ++i) {
        const auto each = gtk::GRef<GtkWindow>::adopt(static_cast<GtkWindow*>(g_list_model_get_item(all, i)));
        if (gtk_window_get_transient_for(each.get()) == window)
            return each.get();
    }
    return nullptr;
}

} // namespace kestrin::test
