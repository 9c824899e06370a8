// Two views in two windows of one process, the second deep in containers.

#include "Stage.h"

#include "bridge/KestrinWebEvent.h"
#include "core/KestrinCVSession.h"
#include "linux/toolkit/Widget.h"
#include "services/util/Json.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

/// A view in an overlay in one half of a paned in a stack of a window.
struct Nested {
    explicit Nested(const KestrinSettings& settings) {
        gtk_overlay_set_child(GTK_OVERLAY(overlay), gtk::widget(*view));
        gtk_paned_set_start_child(GTK_PANED(paned), overlay);
        gtk_paned_set_end_child(GTK_PANED(paned), gtk_label_new("beside it"));
        gtk_paned_set_position(GTK_PANED(paned), 300);
        gtk_stack_add_named(GTK_STACK(stack), paned, "view");
        gtk_stack_add_named(GTK_STACK(stack), gtk_label_new("instead of it"), "other");
        gtk_window_set_child(window, stack);
        gtk_window_set_decorated(window, FALSE);
        gtk_window_set_default_size(window, 500, 240);
        view->setup(settings);
        view->registerForEventCallback(std::int32_t(KestrinWebEvent::stringToEvent("onWebUpdate")),
                                       [this](const boost::json::object& event) {
                                           if (textOf(findMember(event, {"data", "event"})) == "pose")
                                               ++poses;
                                       });
        view->start();
        gtk_window_present(window);
    }

    const std::shared_ptr<KestrinView> view = KestrinCVSession::initKestrinView();
    GtkWindow* const window = GTK_WINDOW(gtk_window_new());
    GtkWidget* const stack = gtk_stack_new();
    GtkWidget* const paned = gtk_paned_new(GTK_ORIENTATION_HORIZONTAL);
    GtkWidget* const overlay = gtk_overlay_new();
    int poses = 0;
};

TEST(TwoViews, RunSideBySideWhenTheSecondStartsAfterTheFirst) {
    Stage stage({});
    const auto firstGoesOn = [&] {
        stage.forgetTold();
        return stage.runUntil([&] { return stage.told("pose").size() > 5; }, kPatience);
    };
    ASSERT_TRUE(firstGoesOn());
    Nested second(stage.settings());
    const auto secondGoesOn = [&] {
        const int before = second.poses;
        return stage.runUntil([&] { return second.poses > before + 5; }, kPatience);
    };
    const auto secondIs = [&](double width, double height) {
        return stage.runUntil([&] { return second.view->frame().size == platform::Size{width, height}; });
    };
    EXPECT_TRUE(secondGoesOn());
    EXPECT_TRUE(firstGoesOn());
    EXPECT_TRUE(secondIs(300, 240));
    gtk_paned_set_position(GTK_PANED(second.paned), 260);
    EXPECT_TRUE(secondIs(260, 240));
    EXPECT_EQ(stage.view().frame().size, (platform::Size{640, 480}));
    gtk_stack_set_visible_child_name(GTK_STACK(second.stack), "other");
    EXPECT_TRUE(firstGoesOn());
    gtk_stack_set_visible_child_name(GTK_STACK(second.stack), "view");
    EXPECT_TRUE(secondGoesOn());

    gtk_window_destroy(second.window); // the view is alive and its place is gone
    EXPECT_TRUE(firstGoesOn());
    second.view->destroy();
    stage.runFor(0.3);
    const int poses = second.poses;
    EXPECT_TRUE(firstGoesOn());
    EXPECT_EQ(second.poses, poses);
}

} // namespace

} // namespace kestrin::test
