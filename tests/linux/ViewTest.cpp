#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::Size;
using platform::View;

/// Counts how often a view's widget leaves the screen.
class LeaveCounter {
  public:
    explicit LeaveCounter(View& view)
        : m_unrealize(gtk::widget(view), "unrealize", G_CALLBACK(count), &unrealized),
          m_unmap(gtk::widget(view), "unmap", G_CALLBACK(count), &unmapped) {}
    int unrealized = 0, unmapped = 0;

  private:
    static void count(gpointer, int* counter) { ++*counter; }
    gtk::SignalHandler m_unrealize, m_unmap;
};

/// Notes the sizes the toolkit tells.
struct NotingView : View {
    void toolkitResized(const Size& size) override {
        sizes.push_back(size);
        View::toolkitResized(size);
    }
    std::vector<Size> sizes;
};

class ViewTest : public ToolkitTest {
  protected:
    ViewTest() {
        for (const auto& view : {red, green, blue})
            root->addSubview(view);
        root->setBackground(platform::kWhite);
        show(*root);
    }

    std::shared_ptr<NotingView> root = makeView<NotingView>();
    std::shared_ptr<View> red = makeBox({{0, 0}, {60, 60}}, kRed);
    std::shared_ptr<View> green = makeBox({{20, 20}, {60, 60}}, kGreen);
    std::shared_ptr<View> blue = makeBox({{40, 40}, {60, 60}}, kBlue);
};

TEST_F(ViewTest, TheViewAddedLastIsAboveAndExactToThePixel) {
    EXPECT_PIXEL(pixel(19, 30), {255, 0, 0});
    EXPECT_PIXEL(pixel(20, 20), {0, 255, 0});
    EXPECT_PIXEL(pixel(99, 99), {0, 0, 255});
    EXPECT_PIXEL(pixel(100, 99), {255, 255, 255});
    root->addSubview(red);
    EXPECT_PIXEL(pixel(59, 59), {255, 0, 0});
    green->addSubview(blue); // its frame is now in green's coordinates
    EXPECT_PIXEL(pixel(99, 99), {0, 0, 255});
    EXPECT_PIXEL(pixel(119, 119), {0, 0, 255});
}

TEST_F(ViewTest, TakenOutAndPutBackInOneTurnStaysRealizedAndMapped) {
    LeaveCounter counters[] = {LeaveCounter(*red), LeaveCounter(*green), LeaveCounter(*blue)};
    for (const auto& view : {green, red, blue})
        view->removeFromSuperview();
    for (const auto& view : {blue, red, green})
        root->addSubview(view);
    green->setHidden(true);
    green->setHidden(false);
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    for (const LeaveCounter& counter : counters)
        EXPECT_EQ(counter.unrealized + counter.unmapped, 0);
}

// Each step in a task of its own, as when another thread asks for hide and show.
TEST_F(ViewTest, TakenOutAndPutBackByTwoTasksInARowStaysRealized) {
    LeaveCounter counter(*green);
    bool done = false;
    system->mainLoop.mainAsync([&] { green->removeFromSuperview(); });
    system->mainLoop.mainAsync([&] { root->addSubview(green); });
    system->mainLoop.mainAsync([&] { done = true; });
    EXPECT_TRUE(runUntil([&] { return done; }));
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    EXPECT_EQ(counter.unrealized, 0);
}

TEST_F(ViewTest, OpacityBlendsTheViewAsAWholeAndNothingIsClickedThatIsUnseen) {
    const auto clicked = [&] {
        settle();
        return gtk_widget_pick(GTK_WIDGET(window), 90, 90, GTK_PICK_DEFAULT);
    };
    blue->addSubview(makeBox({{0, 0}, {60, 30}}, kRed));
    blue->setBorder({20, 4, kGreen});
    EXPECT_PIXEL(pixel(98, 98), {255, 255, 255}); // beyond the round corner
    EXPECT_PIXEL(pixel(97, 65), {0, 255, 0});
    blue->setOpacity(0.5);
    EXPECT_PIXEL(pixel(90, 65), {255, 127, 127}); // nothing of the blue below it shines through
    EXPECT_PIXEL(pixel(90, 80), {127, 127, 255});
    EXPECT_EQ(clicked(), gtk::widget(*root)); // which shines through
    blue->setOpacity(1);
    EXPECT_EQ(clicked(), gtk::widget(*blue));
    blue->setOpacity(0);
    EXPECT_EQ(clicked(), gtk::widget(*root));
    EXPECT_TRUE(gtk_widget_get_mapped(gtk::widget(*blue))); // what runs in it goes on
}

TEST_F(ViewTest, TheAllocationBecomesTheSizeOfTheRootOnce) {
    EXPECT_EQ(root->sizes, (std::vector<Size>{{200, 120}}));
    gtk_window_set_default_size(window, 100, 160);
    EXPECT_TRUE(runUntil([&] { return root->sizes.size() == 2; }));
    gtk_widget_queue_resize(gtk::widget(*root)); // a layout without a new size
    settle();
    root->setFrame({{0, 0}, {640, 480}}); // a late resize from elsewhere
    settle();
    EXPECT_EQ(root->sizes, (std::vector<Size>{{200, 120}, {100, 160}, {100, 160}}));
    EXPECT_EQ(root->frame().size, (Size{100, 160}));
}

} // namespace
} // namespace kestrin::test
