#include "linux/toolkit/Activity.h"

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

// Longer than a window manager needs to hand the focus on, shorter than a person notices.
constexpr double kSettleTime = 0.1; // seconds, as the next
constexpr double kPatience = 2;

bool isMinimised(GtkWindow* window) {
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window));
    return surface && GDK_IS_TOPLEVEL(surface) &&
           (gdk_toplevel_get_state(GDK_TOPLEVEL(surface)) & GDK_TOPLEVEL_STATE_MINIMIZED);
}

bool isShown(GtkWindow* window) { return gtk_widget_get_mapped(GTK_WIDGET(window)) && !isMinimised(window); }

/// A window that was focused when it was unmapped goes on to call itself active.
bool isFocused(GtkWindow* window) { return gtk_window_is_active(window) && isShown(window); }

std::vector<GtkWindow*> allWindows() {
    std::vector<GtkWindow*> windows;
    GListModel* model = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(model); ++i) {
        const auto item = GRef<GObject>::adopt(static_cast<GObject*>(g_list_model_get_item(model, i)));
        windows.push_back(GTK_WINDOW(item.get()));
    }
    return windows;
}

} // namespace

/// Hears of everything that can change one window's part.
class Activity::Watch {
  public:
    Watch(GtkWindow* window, Activity& activity) : m_window(window), m_activity(activity) {
        m_focus = SignalHandler(window, "notify::is-active", G_CALLBACK(changed), this);
        m_map = SignalHandler(window, "map", G_CALLBACK(mapped), this);
        m_unmap = SignalHandler(window, "unmap", G_CALLBACK(mapped), this);
        mapped(window, this);
    }

  private:
    static void changed(gpointer, gpointer, Watch* self) { self->m_activity.settleSoon(); }

    /// The surface is another one after each time the window was realized.
    static void mapped(gpointer, Watch* self) {
        if (GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(self->m_window)))
            self->m_state = SignalHandler(surface, "notify::state", G_CALLBACK(changed), self);
        self->m_activity.settleSoon();
    }

    GtkWindow* const m_window;
    Activity& m_activity;
    SignalHandler m_focus, m_map, m_unmap, m_state;
};

Activity::Activity(platform::Dispatch& dispatch, platform::NotificationCenter& center)
    : m_dispatch(dispatch), m_center(center) {}

Activity::~Activity() = default;

std::shared_ptr<Activity> Activity::make(platform::Dispatch& dispatch, platform::NotificationCenter& center) {
    std::shared_ptr<Activity> activity(new Activity(dispatch, center));
    activity->start();
    return activity;
}

void Activity::start() {
    const auto changed = G_CALLBACK(+[](gpointer, guint, guint, guint, gpointer self) {
        static_cast<Activity*>(self)->windowsChanged();
    });
    m_windowsChanged = SignalHandler(gtk_window_get_toplevels(), "items-changed", changed, this);
    windowsChanged();
}

void Activity::windowsChanged() {
    const std::vector<GtkWindow*> present = allWindows();
    std::erase_if(m_watches, [&](const auto& watch) {
        return std::ranges::find(present, watch.first) == present.end();
    });
    for (GtkWindow* window : present)
        if (!m_watches.contains(window))
            m_watches.emplace(window, std::make_unique<Watch>(window, *this));

    // The host may make its application object at any time before its first window.
    if (GApplication* application = g_application_get_default()) {
        const auto ended =
            G_CALLBACK(+[](gpointer, gpointer self) { static_cast<Activity*>(self)->terminate(); });
        m_shutdown = SignalHandler(application, "shutdown", ended, this);
    }
    settleSoon();
}

void Activity::settleSoon() {
    m_lastChange = m_dispatch.now();
    if (!std::exchange(m_isSettling, true))
        settleAfter(kSettleTime);
}

void Activity::settleAfter(double seconds) {
    m_dispatch.mainAfter(seconds, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self)
            return;
        const double left = self->m_lastChange + kSettleTime - self->m_dispatch.now();
        if (left > 0)
            self->settleAfter(left);
        else
            self->settle();
    });
}

void Activity::settle() {
    m_isSettling = false;
    const std::vector<GtkWindow*> windows = allWindows();
    const bool active = std::ranges::any_of(windows, isFocused);
    const bool visible = std::ranges::any_of(windows, isShown);
    const bool resigns = m_isActive && !active, hides = m_isVisible && !visible;
    const bool activates = !m_isActive && active;
    m_isActive = active;
    m_isVisible = visible;
    if (resigns)
        m_center.post(platform::kWillResignActive);
    if (hides)
        m_center.post(platform::kDidEnterBackground);
    if (activates)
        m_center.post(platform::kDidBecomeActive);
    if (m_isActive)
        goOn();
}

void Activity::whenActive(platform::Task task) {
    m_afterwards.push_back(std::move(task));
    settleSoon();
    m_dispatch.mainAfter(kPatience, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->goOn();
    });
}

void Activity::goOn() {
    for (const platform::Task& task : std::exchange(m_afterwards, {}))
        task();
}

void Activity::terminate() {
    if (std::exchange(m_isTerminated, true))
        return;
    settle();
    m_center.post(platform::kWillTerminate);
}

} // namespace kestrin::gtk
