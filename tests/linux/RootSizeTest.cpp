#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::Size;
using platform::View;

/// Notes what the toolkit says.
class NotingView : public View {
  public:
    void toolkitResized(const Size& size) override {
        sizes.push_back(size);
        orientations.push_back(platform::platform().application().orientation());
        if (follows)
            View::toolkitResized(size);
        else
            setFrame({{}, {size.width + 1, size.height}});
    }
    std::vector<Size> sizes;
    std::vector<int> orientations;
    bool follows = true;
};

class RootSizeTest : public ToolkitTest {
  protected:
    void resizeWindow(int width, int height) {
        gtk_window_set_default_size(window, width, height);
        runUntil([&] { return gtk_widget_get_width(gtk::widget(*root)) == width; });
        settle();
    }

    std::shared_ptr<NotingView> root = makeView<NotingView>();
};

TEST_F(RootSizeTest, TheAllocationBecomesTheSizeOnce) {
    const auto child = makeBox({{0, 0}, {0, 0}}, kBlue);
    child->setResizing(View::kFlexibleWidth | View::kFlexibleHeight);
    root->addSubview(child);
    show(*root, 200, 120);
    EXPECT_EQ(root->sizes, (std::vector<Size>{{200, 120}}));
    EXPECT_PIXEL(pixel(199, 119), {0, 0, 255});
    resizeWindow(260, 180);
    EXPECT_EQ(root->sizes, (std::vector<Size>{{200, 120}, {260, 180}}));
    EXPECT_PIXEL(pixel(259, 179), {0, 0, 255});
    gtk_widget_queue_resize(gtk::widget(*root)); // a layout without a new size
    settle();
    EXPECT_EQ(root->sizes.size(), 2U);
}

TEST_F(RootSizeTest, TheFrameAsksForNoSize) {
    root->setFrame({{0, 0}, {5000, 5000}});
    show(*root, 200, 120);
    EXPECT_EQ(root->frame().size, (Size{200, 120}));
}

TEST_F(RootSizeTest, AFrameThatDiffersIsCorrectedOnce) {
    show(*root, 200, 120);
    root->sizes.clear();
    root->setFrame({{0, 0}, {640, 480}}); // a late resize from elsewhere
    settle();
    EXPECT_EQ(root->sizes, (std::vector<Size>{{200, 120}}));
    EXPECT_EQ(root->frame().size, (Size{200, 120}));

    root->sizes.clear();
    root->follows = false; // a view that keeps its own size is not told for ever
    root->setFrame({{0, 0}, {640, 480}});
    settle();
    root->addSubview(makeBox({}, kRed)); // other changes are no occasion to say it again
    settle();
    EXPECT_EQ(root->sizes.size(), 1U);
}

TEST_F(RootSizeTest, ASizeSetBetweenTwoWindowsIsCorrectedInTheNext) {
    show(*root, 200, 120);
    gtk_window_destroy(window);
    root->setFrame({{0, 0}, {640, 480}});
    show(*root, 200, 120);
    EXPECT_EQ(root->frame().size, (Size{200, 120}));
}

TEST_F(RootSizeTest, TheOrientationOfTheShapeIsKnownBeforeTheSize) {
    show(*root, 200, 120);
    resizeWindow(100, 160);
    resizeWindow(120, 120);
    EXPECT_EQ(root->orientations, (std::vector<int>{3, 1, 1}));
}

TEST_F(RootSizeTest, WhatSticksOutOfTheRootIsCutOff) {
    root->addSubview(makeBox({{-50, -50}, {5000, 5000}}, kBlue));
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    GtkWidget* neighbour = gtk_drawing_area_new();
    gtk_widget_set_size_request(neighbour, 50, 50);
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, false);
    gtk_window_set_default_size(window, 200, 120);
    gtk_box_append(GTK_BOX(box), neighbour);
    gtk_box_append(GTK_BOX(box), gtk::widget(*root));
    gtk_window_set_child(window, box);
    gtk_window_present(window);
    runUntil([&] { return !root->sizes.empty(); });
    EXPECT_EQ(root->sizes.back(), (Size{150, 120}));
    EXPECT_PIXEL(pixel(50, 60), {0, 0, 255});
    EXPECT_FALSE(pixel(49, 60).isNear({0, 0, 255}));
    gtk_window_destroy(window);
}

class FixedOrientationTest : public ToolkitTest {
  protected:
    FixedOrientationTest() : ToolkitTest(4) {}
};

TEST_F(FixedOrientationTest, AFixedOrientationIgnoresTheShape) {
    const auto root = makeView<NotingView>();
    show(*root, 100, 160);
    EXPECT_EQ(root->orientations, (std::vector<int>{4}));
}

} // namespace
} // namespace kestrin::test
