#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

#include <thread>

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::View;

class ViewTreeTest : public ToolkitTest {
  protected:
    std::shared_ptr<View> root = makeBox({{0, 0}, {10, 10}}, kRed);
};

TEST_F(ViewTreeTest, AViewThatDiesFirstLeavesAnEmptyWidget) {
    const auto child = makeBox({{0, 0}, {50, 50}}, kBlue);
    root->addSubview(child);
    show(*root);
    EXPECT_PIXEL(pixel(10, 10), {0, 0, 255});
    root.reset();
    const Pixel windowColor = pixel(190, 110);
    EXPECT_TRUE(pixel(10, 10).isNear(windowColor));
    EXPECT_FALSE(windowColor.isNear({255, 0, 0}));

    root = makeBox({{0, 0}, {10, 10}}, kGreen);
    root->addSubview(child); // its widget is free
    gtk_window_set_child(window, gtk::widget(*root));
    EXPECT_PIXEL(pixel(10, 10), {0, 0, 255});
    EXPECT_PIXEL(pixel(190, 110), {0, 255, 0});
}

TEST_F(ViewTreeTest, AViewOutlivesItsWindowAndIsPlacedAgain) {
    const auto child = makeBox({{0, 0}, {50, 50}}, kBlue);
    root->addSubview(child);
    show(*root);
    gtk_window_destroy(window);
    settle();
    child->setFrame({{0, 0}, {20, 20}}); // nothing to be shown on
    root->setBackground(kGreen);
    show(*root);
    EXPECT_PIXEL(pixel(10, 10), {0, 0, 255});
    EXPECT_PIXEL(pixel(30, 30), {0, 255, 0});
}

TEST_F(ViewTreeTest, ViewsThatDieBeforeTheReconciliationAreForgotten) {
    show(*root);
    for (int i = 0; i < 100; ++i) {
        const auto child = makeBox({{0, 0}, {50, 50}}, kBlue);
        root->addSubview(child);
        child->addSubview(makeBox({{0, 0}, {5, 5}}, kGreen));
        if (i % 2)
            child->removeFromSuperview();
        child->setHidden(i % 3 == 0);
    }
    std::vector<std::shared_ptr<View>> children = root->subviews();
    for (const auto& child : children)
        child->removeFromSuperview();
    children.clear();
    EXPECT_PIXEL(pixel(10, 10), {255, 0, 0});
}

TEST_F(ViewTreeTest, AViewReleasedOnAnotherThreadDiesOnMain) {
    show(*root);
    auto child = makeBox({{0, 0}, {50, 50}}, kBlue);
    const std::weak_ptr<View> weak = child;
    std::thread([held = std::move(child)] {}).join();
    EXPECT_TRUE(weak.expired());
    EXPECT_PIXEL(pixel(10, 10), {255, 0, 0});
}

TEST_F(ViewTreeTest, ATreeOfManyViewsIsFreedWithItsRoot) {
    GObject* widget = G_OBJECT(gtk::widget(*root));
    root->addSubview(makeBox({{0, 0}, {50, 50}}, kBlue));
    GObject* childWidget = G_OBJECT(gtk::widget(*root->subviews()[0]));
    g_object_add_weak_pointer(widget, reinterpret_cast<gpointer*>(&widget));
    g_object_add_weak_pointer(childWidget, reinterpret_cast<gpointer*>(&childWidget));
    show(*root);
    gtk_window_destroy(window);
    root.reset();
    settle();
    EXPECT_EQ(widget, nullptr);
    EXPECT_EQ(childWidget, nullptr);
}

} // namespace
} // namespace kestrin::test
