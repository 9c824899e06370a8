#include "linux/toolkit/DesktopApplication.h"

#include "linux/toolkit/Alert.h"
#include "linux/toolkit/Links.h"
#include "linux/toolkit/ShareSheet.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr int kPortrait = 1, kLandscapeRight = 3;

} // namespace

DesktopApplication::DesktopApplication(const Options& options, platform::Dispatch& dispatch,
                                       std::shared_ptr<platform::LogSink> log)
    : m_options(options), m_dispatch(dispatch), m_log(std::move(log)), m_orientation(options.orientation),
      m_activity(Activity::make(dispatch, m_center)), m_presentations(dispatch) {}

GdkMonitor* DesktopApplication::monitor() const {
    GdkDisplay* display = gdk_display_get_default();
    const auto root = m_root.lock();
    GtkNative* native = root ? gtk_widget_get_native(root.get()) : nullptr;
    GdkSurface* surface = native ? gtk_native_get_surface(native) : nullptr;
    if (surface)
        if (GdkMonitor* own = gdk_display_get_monitor_at_surface(display, surface))
            return own;
    GListModel* all = gdk_display_get_monitors(display);
    const auto first = GRef<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(all, 0)));
    return first.get(); // the display keeps it
}

platform::Screen DesktopApplication::mainScreen() const {
    platform::Screen screen{m_options.screenSize, 1, 1, true};
    GdkMonitor* const shown = monitor();
    if (!shown)
        return screen;
    GdkRectangle area{};
    gdk_monitor_get_geometry(shown, &area);
    if (area.width > 0 && area.height > 0)
        screen.size = {double(area.width), double(area.height)};
    screen.nativeScale = gdk_monitor_get_scale_factor(shown);
    const auto root = m_root.lock();
    screen.scale = root ? gtk_widget_get_scale_factor(root.get()) : screen.nativeScale;
    return screen;
}

bool DesktopApplication::canOpenUrl(const std::string& url) const { return hasLinkHandler(url); }

void DesktopApplication::openUrl(const std::string& url) { openLink(url, m_log); }

GtkWindow* DesktopApplication::window() const {
    const auto root = m_root.lock();
    GtkRoot* const window = root ? gtk_widget_get_root(root.get()) : nullptr;
    return window && GTK_IS_WINDOW(window) ? GTK_WINDOW(window) : nullptr;
}

void DesktopApplication::showAlert(const std::string& title, const std::string& message,
                                   const std::string& button) {
    gtk::showAlert(window(), title, message, button);
}

void DesktopApplication::present(const std::shared_ptr<platform::ViewController>& controller) {
    m_presentations.present(window(), controller);
}

void DesktopApplication::presentShareSheet(const std::vector<platform::ShareItem>& items) {
    ShareSheet::present(window(), items, m_dispatch, m_activity, m_log);
}

void DesktopApplication::ask(const Question& question, std::function<void(Reply)> answer) {
    gtk::ask(window(), question, [activity = m_activity, answer = std::move(answer)](Reply reply) {
        activity->whenActive([answer, reply] { answer(reply); });
    });
}

void DesktopApplication::rootAllocated(GtkWidget* root, const platform::Size& size) {
    m_root.set(root);
    if (m_options.orientation == 0)
        m_orientation.set(size.width > size.height ? kLandscapeRight : kPortrait);
}

} // namespace kestrin::gtk
