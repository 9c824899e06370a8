#include "linux/PrivateHome.h"
#include "linux/ToolkitTest.h"
#include "linux/WindowManager.h"
#include "linux/toolkit/Alert.h"
#include "linux/toolkit/Widget.h"

#include <fstream>

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::View;

class ApplicationTest : public ToolkitTest {
  protected:
    ApplicationTest() {
        needWindowManager();
        for (const char* name : {platform::kWillResignActive, platform::kDidBecomeActive,
                                 platform::kDidEnterBackground, platform::kWillTerminate})
            system->desktop.notifications().addObserver(
                this, name, [this](const std::string& told) { notifications.push_back(told); });
    }

    void showFocused() {
        show(*root);
        ASSERT_TRUE(runUntil([&] { return notifications.size() == 1; })) << "the window got no focus";
        EXPECT_EQ(notifications[0], platform::kDidBecomeActive);
        notifications.clear();
    }

    /// What is told within the time that a window manager may take.
    std::vector<std::string> toldMeanwhile(double seconds = 0.5) {
        runUntil([] { return false; }, seconds);
        return std::exchange(notifications, {});
    }

    static GtkWindow* alert() {
        GListModel* windows = gtk_window_get_toplevels();
        for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
            const auto item =
                gtk::GRef<GObject>::adopt(static_cast<GObject*>(g_list_model_get_item(windows, i)));
            if (GTK_IS_MESSAGE_DIALOG(item.get()))
                return GTK_WINDOW(item.get());
        }
        return nullptr;
    }

    std::shared_ptr<View> root = makeView<View>();
    std::vector<std::string> notifications;
};

using Told = std::vector<std::string>;

TEST_F(ApplicationTest, FocusThatStaysInTheApplicationIsNoChange) {
    showFocused();
    GtkWidget* second = gtk_window_new();
    gtk_window_present(GTK_WINDOW(second));
    EXPECT_TRUE(runUntil([&] { return gtk_window_is_active(GTK_WINDOW(second)); }));
    EXPECT_EQ(toldMeanwhile(), Told{});
    gtk_window_destroy(GTK_WINDOW(second));
    EXPECT_EQ(toldMeanwhile(), Told{});
}

TEST_F(ApplicationTest, MinimisingResignsAndEntersTheBackground) {
    showFocused();
    gtk_window_minimize(window);
    EXPECT_TRUE(runUntil([&] { return notifications.size() == 2; }));
    EXPECT_EQ(toldMeanwhile(), (Told{platform::kWillResignActive, platform::kDidEnterBackground}));
    gtk_window_unminimize(window);
    gtk_window_present(window);
    EXPECT_TRUE(runUntil([&] { return notifications.size() == 1; }));
    EXPECT_EQ(toldMeanwhile(), Told{platform::kDidBecomeActive});
}

TEST_F(ApplicationTest, UnmappingIsLikeMinimisingAndTheEndIsToldOnce) {
    showFocused();
    gtk_widget_set_visible(GTK_WIDGET(window), false);
    EXPECT_TRUE(runUntil([&] { return notifications.size() == 2; }));
    EXPECT_EQ(toldMeanwhile(), (Told{platform::kWillResignActive, platform::kDidEnterBackground}));
    system->desktop.terminate();
    system->desktop.terminate();
    EXPECT_EQ(notifications, Told{platform::kWillTerminate});
}

// What would be told a moment later is told before the end.
TEST_F(ApplicationTest, TheEndComesAfterWhatIsStillUntold) {
    showFocused();
    gtk_window_destroy(window);
    system->desktop.terminate();
    EXPECT_EQ(notifications,
              (Told{platform::kWillResignActive, platform::kDidEnterBackground, platform::kWillTerminate}));
}

TEST_F(ApplicationTest, ShutdownOfTheHostsApplicationIsTheEnd) {
    const auto application =
        gtk::GRef<GtkApplication>::adopt(gtk_application_new("org.kestrin.Test", G_APPLICATION_NON_UNIQUE));
    g_application_set_default(G_APPLICATION(application.get()));
    showFocused();
    g_signal_emit_by_name(application.get(), "shutdown");
    EXPECT_EQ(notifications.back(), platform::kWillTerminate);
    g_application_set_default(nullptr);
}

TEST_F(ApplicationTest, AnAlertIsModalOverTheViewAndDoesNotResign) {
    showFocused();
    system->desktop.showAlert("Title <b>", "Text\nof \xFF two lines", "Dismiss");
    ASSERT_TRUE(alert());
    EXPECT_TRUE(runUntil([&] { return gtk_window_is_active(alert()); }));
    EXPECT_TRUE(gtk_window_get_modal(alert()));
    EXPECT_EQ(gtk_window_get_transient_for(alert()), window);
    GtkWidget* button = gtk_dialog_get_widget_for_response(GTK_DIALOG(alert()), GTK_RESPONSE_CLOSE);
    ASSERT_TRUE(button);
    EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(button)), "Dismiss");
    g_signal_emit_by_name(button, "clicked");
    EXPECT_TRUE(runUntil([&] { return !alert(); }));
    EXPECT_EQ(toldMeanwhile(), Told{});
}

TEST_F(ApplicationTest, AnAlertNeedsNoWindow) {
    system->desktop.showAlert("Title", "Text", "OK");
    ASSERT_TRUE(alert());
    gtk_dialog_response(GTK_DIALOG(alert()), GTK_RESPONSE_DELETE_EVENT);
    EXPECT_FALSE(alert());
}

TEST_F(ApplicationTest, TheScreenIsThatOfTheMonitor) {
    for (const bool shown : {false, true}) {
        if (shown)
            show(*root);
        const platform::Screen screen = system->desktop.mainScreen();
        EXPECT_GE(screen.size.width, 640);
        EXPECT_GE(screen.size.height, 480);
        EXPECT_EQ(screen.scale, screen.nativeScale);
        EXPECT_TRUE(screen.hasDisplayLink);
    }
}

TEST_F(ApplicationTest, LinksGoToTheDesktopsDefaultProgram) {
    const auto programs = privateHome() / "data/applications";
    const auto opened = privateHome() / "opened";
    std::filesystem::create_directories(programs);
    std::ofstream(programs / "kestrin-test.desktop")
        << "[Desktop Entry]\nType=Application\nName=Test\nExec=sh -c 'printf %%s \"$1\" > " << opened.string()
        << ".part; mv " << opened.string() << ".part " << opened.string()
        << "' sh %u\nMimeType=x-scheme-handler/kestrin-test;\n";
    std::ofstream(programs / "mimeapps.list")
        << "[Default Applications]\nx-scheme-handler/kestrin-test=kestrin-test.desktop\n";
    // The system looks for new programs now and then only.
    EXPECT_TRUE(runUntil([&] { return system->desktop.canOpenUrl("kestrin-test:hello"); }));
    EXPECT_TRUE(system->desktop.canOpenUrl("KESTRIN-TEST:hello"));
    for (const char* url : {"no-such-scheme:hello", "hello", "", ":", "\xFF:x"})
        EXPECT_FALSE(system->desktop.canOpenUrl(url)) << url;

    system->desktop.openUrl("kestrin-test:hello?a=1&b=2");
    EXPECT_TRUE(runUntil([&] { return std::filesystem::exists(opened); }));
    std::string text;
    std::getline(std::ifstream(opened), text);
    EXPECT_EQ(text, "kestrin-test:hello?a=1&b=2");

    EXPECT_TRUE(log().empty());
    system->desktop.openUrl("no-such-scheme:hello");
    EXPECT_TRUE(runUntil([&] { return log().size() == 1; }));
}

} // namespace
} // namespace kestrin::test
