#include "ToolkitTest.h"

#include <algorithm>

namespace kestrin::test {

namespace {

struct AlertTest : ToolkitTest {
    /// The dialogs that are shown.
    static std::vector<GtkWindow*> dialogs() {
        std::vector<GtkWindow*> found;
        GListModel* all = gtk_window_get_toplevels();
        for (guint i = 0; i < g_list_model_get_n_items(all); ++i) {
            const auto each =
                gtk::GRef<GtkWindow>::adopt(static_cast<GtkWindow*>(g_list_model_get_item(all, i)));
            if (GTK_IS_MESSAGE_DIALOG(each.get()) && gtk_widget_get_mapped(GTK_WIDGET(each.get())))
                found.push_back(each.get());
        }
        return found;
    }
    void alert() { system->desktop.showAlert("Title <b>", "Message %s \xFF", "_Close"); }
};

} // namespace

TEST_F(AlertTest, IsModalAndGoesWithItsButtonWhetherThereIsAWindowOrNot) {
    alert();
    ASSERT_TRUE(runUntil([] { return dialogs().size() == 1; }));
    g_autofree char* title = nullptr;
    g_autofree char* message = nullptr;
    g_object_get(dialogs()[0], "text", &title, "secondary-text", &message, nullptr);
    EXPECT_STREQ(title, "Title <b>");
    EXPECT_STREQ(message, "Message %s \uFFFD");
    EXPECT_TRUE(gtk_window_get_modal(dialogs()[0]));

    const auto view = makeBox({{0, 0}, {200, 120}}, kRed);
    GtkWindow* const host = show(*view);
    alert();
    ASSERT_TRUE(runUntil([] { return dialogs().size() == 2; }));
    const auto shown = dialogs();
    const auto second = std::ranges::find(shown, host, gtk_window_get_transient_for);
    ASSERT_NE(second, shown.end());
    GtkWidget* const button = gtk_window_get_default_widget(*second);
    EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(button)), "_Close");
    EXPECT_FALSE(gtk_button_get_use_underline(GTK_BUTTON(button)));
    gtk_widget_activate(button);
    EXPECT_TRUE(runUntil([] { return dialogs().size() == 1; }));
    gtk_window_close(dialogs()[0]);
    EXPECT_TRUE(runUntil([] { return dialogs().empty(); }));
}

} // namespace kestrin::test
