#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

#include <cmath>

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::View;

class ViewLookTest : public ToolkitTest {
  protected:
    ViewLookTest() {
        root->setBackground(platform::kWhite);
        root->addSubview(box);
        show(*root);
    }

    /// What a click at that place of the window would reach.
    GtkWidget* clicked(int x, int y) {
        settle();
        return gtk_widget_pick(GTK_WIDGET(window), x, y, GTK_PICK_DEFAULT);
    }

    std::shared_ptr<View> root = makeView<View>();
    std::shared_ptr<View> box = makeBox({{20, 10}, {80, 60}}, kRed);
};

TEST_F(ViewLookTest, TheFrameIsExactToThePixel) {
    for (const auto& [x, y] : {std::pair(20, 10), {99, 10}, {20, 69}, {99, 69}})
        EXPECT_PIXEL(pixel(x, y), {255, 0, 0});
    for (const auto& [x, y] : {std::pair(19, 10), {20, 9}, {100, 69}, {99, 70}})
        EXPECT_PIXEL(pixel(x, y), {255, 255, 255});
    box->setFrame({{30, 20}, {10, 10}});
    EXPECT_PIXEL(pixel(39, 29), {255, 0, 0});
    EXPECT_PIXEL(pixel(40, 30), {255, 255, 255});
}

TEST_F(ViewLookTest, FramesNest) {
    const auto inner = makeBox({{10, 10}, {30, 200}}, kBlue);
    const auto innermost = makeBox({{5, 5}, {10, 10}}, kGreen);
    box->addSubview(inner);
    inner->addSubview(innermost);
    EXPECT_PIXEL(pixel(30, 20), {0, 0, 255});
    EXPECT_PIXEL(pixel(35, 25), {0, 255, 0});
    EXPECT_PIXEL(pixel(29, 20), {255, 0, 0});
    EXPECT_PIXEL(pixel(40, 100), {0, 0, 255}); // a subview may stick out of its parent
}

TEST_F(ViewLookTest, HiddenIsNeitherSeenNorClicked) {
    EXPECT_EQ(clicked(50, 50), gtk::widget(*box));
    box->setHidden(true);
    EXPECT_PIXEL(pixel(50, 50), {255, 255, 255});
    EXPECT_EQ(clicked(50, 50), gtk::widget(*root));
    box->setHidden(false);
    EXPECT_PIXEL(pixel(50, 50), {255, 0, 0});
}

TEST_F(ViewLookTest, OpacityBlendsTheViewAsAWhole) {
    const auto inner = makeBox({{0, 0}, {10, 10}}, kBlue);
    box->addSubview(inner);
    box->setOpacity(0.5);
    EXPECT_PIXEL(pixel(50, 50), {255, 127, 127});
    EXPECT_PIXEL(pixel(25, 15), {127, 127, 255}); // nothing of the red below it shines through
    EXPECT_EQ(clicked(50, 50), gtk::widget(*box));
    box->setOpacity(0);
    EXPECT_PIXEL(pixel(50, 50), {255, 255, 255});
    EXPECT_EQ(clicked(50, 50), gtk::widget(*root));
    EXPECT_TRUE(gtk_widget_get_mapped(gtk::widget(*box))); // what runs in it goes on
    box->setOpacity(1);
    EXPECT_EQ(clicked(50, 50), gtk::widget(*box));
}

TEST_F(ViewLookTest, ATransparentBackgroundShowsWhatIsBelow) {
    box->setBackground({0, 0, 1, 0.5F});
    EXPECT_PIXEL(pixel(50, 50), {127, 127, 255});
    box->setBackground(platform::kClear);
    EXPECT_PIXEL(pixel(50, 50), {255, 255, 255});
}

TEST_F(ViewLookTest, RoundedCornersCutTheBackgroundAndTheSubviews) {
    box->addSubview(makeBox({{0, 0}, {40, 60}}, kBlue));
    box->setBorder({20, 0, {}});
    EXPECT_PIXEL(pixel(21, 11), {255, 255, 255});
    EXPECT_PIXEL(pixel(98, 68), {255, 255, 255});
    EXPECT_PIXEL(pixel(30, 40), {0, 0, 255});
    EXPECT_PIXEL(pixel(90, 40), {255, 0, 0});
}

TEST_F(ViewLookTest, TheBorderIsInsideAndAboveTheSubviews) {
    box->addSubview(makeBox({{0, 0}, {80, 60}}, kBlue));
    box->setBorder({0, 4, kGreen});
    EXPECT_PIXEL(pixel(23, 40), {0, 255, 0});
    EXPECT_PIXEL(pixel(24, 40), {0, 0, 255});
    EXPECT_PIXEL(pixel(19, 40), {255, 255, 255});
}

TEST_F(ViewLookTest, AFadeReachesTheScreen) {
    bool finished = false;
    box->animateOpacity(0, 0.1, [&](bool ranToItsEnd) { finished = ranToItsEnd; });
    EXPECT_TRUE(runUntil([&] { return finished; }));
    EXPECT_PIXEL(pixel(50, 50), {255, 255, 255});
}

TEST_F(ViewLookTest, FramesThatAreNoFramesAreEmpty) {
    const double nan = std::nan("");
    for (const platform::Rect& frame :
         {platform::Rect{{0, 0}, {-5, 20}}, {{nan, nan}, {nan, nan}}, {{-1e300, 0}, {10, 1e300}}}) {
        box->setFrame(frame);
        EXPECT_PIXEL(pixel(50, 50), {255, 255, 255});
    }
}

} // namespace
} // namespace kestrin::test
