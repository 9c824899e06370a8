#include "ToolkitTest.h"

namespace kestrin::test {

namespace {

struct AlertTest : ToolkitTest {
    GListModel* const windows = gtk_window_get_toplevels();
    guint count() const { return g_list_model_get_n_items(windows); }
};

} // namespace

TEST_F(AlertTest, IsModalAndGoesWithItsButtonWhetherThereIsAWindowOrNot) {
    const auto view = makeBox({{0, 0}, {200, 120}}, kRed);
    for (const bool hasWindow : {false, true}) {
        GtkWindow* const host = hasWindow ? show(*view) : nullptr;
        const guint before = count();
        system->desktop.showAlert("Title <b>", "Message %s \xFF", "_Close");
        ASSERT_EQ(count(), before + 1);
        const auto dialog =
            gtk::GRef<GtkWindow>::adopt(static_cast<GtkWindow*>(g_list_model_get_item(windows, before)));
        ASSERT_TRUE(runUntil([&] { return gtk_widget_get_mapped(GTK_WIDGET(dialog.get())); }));
        g_autofree char* title = nullptr;
        g_autofree char* message = nullptr;
        g_object_get(dialog.get(), "text", &title, "secondary-text", &message, nullptr);
        EXPECT_STREQ(title, "Title <b>");
        EXPECT_STREQ(message, "Message %s \uFFFD");
        EXPECT_TRUE(gtk_window_get_modal(dialog.get()));
        EXPECT_EQ(gtk_window_get_transient_for(dialog.get()), host);
        gtk_widget_activate(gtk_window_get_default_widget(dialog.get()));
        EXPECT_TRUE(runUntil([&] { return count() == before; }));
    }
}

} // namespace kestrin::test
