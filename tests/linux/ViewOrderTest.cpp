#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::View;

/// Counts how often a view's widget is realized and unrealized.
class RealizeCounter {
  public:
    explicit RealizeCounter(View& view) {
        GtkWidget* widget = gtk::widget(view);
        m_realize = gtk::SignalHandler(widget, "realize", G_CALLBACK(count), &realized);
        m_unrealize = gtk::SignalHandler(widget, "unrealize", G_CALLBACK(count), &unrealized);
        m_unmap = gtk::SignalHandler(widget, "unmap", G_CALLBACK(count), &unmapped);
    }
    int realized = 0, unrealized = 0, unmapped = 0;

  private:
    static void count(gpointer, int* counter) { ++*counter; }
    gtk::SignalHandler m_realize, m_unrealize, m_unmap;
};

class ViewOrderTest : public ToolkitTest {
  protected:
    ViewOrderTest() {
        for (const auto& view : {red, green, blue})
            root->addSubview(view);
        show(*root);
    }

    std::shared_ptr<View> root = makeView<View>();
    std::shared_ptr<View> red = makeBox({{0, 0}, {100, 100}}, kRed);
    std::shared_ptr<View> green = makeBox({{20, 20}, {100, 100}}, kGreen);
    std::shared_ptr<View> blue = makeBox({{40, 40}, {100, 100}}, kBlue);
};

TEST_F(ViewOrderTest, LaterSubviewsAreAbove) {
    EXPECT_PIXEL(pixel(10, 10), {255, 0, 0});
    EXPECT_PIXEL(pixel(30, 30), {0, 255, 0});
    EXPECT_PIXEL(pixel(50, 50), {0, 0, 255});
}

TEST_F(ViewOrderTest, AddingAChildAgainMovesItToTheTop) {
    root->addSubview(red);
    EXPECT_PIXEL(pixel(50, 50), {255, 0, 0});
    EXPECT_PIXEL(pixel(110, 110), {0, 0, 255});
}

TEST_F(ViewOrderTest, WhatIsTakenOutIsGone) {
    RealizeCounter counter(*blue);
    blue->removeFromSuperview();
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    EXPECT_EQ(counter.unrealized, 1);
    root->addSubview(blue);
    EXPECT_PIXEL(pixel(50, 50), {0, 0, 255});
    EXPECT_EQ(counter.realized, 1);
}

TEST_F(ViewOrderTest, TakenOutAndPutBackInOneTurnStaysRealizedAndMapped) {
    RealizeCounter counters[] = {RealizeCounter(*red), RealizeCounter(*green), RealizeCounter(*blue)};
    for (const auto& view : {green, red, blue})
        view->removeFromSuperview();
    for (const auto& view : {blue, red, green})
        root->addSubview(view);
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    EXPECT_PIXEL(pixel(130, 130 - 11), {0, 0, 255});
    for (const RealizeCounter& counter : counters) {
        EXPECT_EQ(counter.unrealized, 0);
        EXPECT_EQ(counter.unmapped, 0);
    }
}

// Each step in a task of its own, as when another thread asks for hide and show.
TEST_F(ViewOrderTest, TakenOutAndPutBackByTwoTasksInARowStaysRealized) {
    RealizeCounter counter(*green);
    bool done = false;
    system->queues.mainAsync([&] { green->removeFromSuperview(); });
    system->queues.mainAsync([&] { root->addSubview(green); });
    system->queues.mainAsync([&] { done = true; });
    EXPECT_TRUE(runUntil([&] { return done; }));
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    EXPECT_EQ(counter.unrealized, 0);
}

TEST_F(ViewOrderTest, HiddenAndShownInOneTurnStaysMapped) {
    RealizeCounter counter(*green);
    green->setHidden(true);
    green->setHidden(false);
    EXPECT_PIXEL(pixel(30, 30), {0, 255, 0});
    EXPECT_EQ(counter.unmapped, 0);
}

TEST_F(ViewOrderTest, AViewMovesToAnotherParent) {
    green->addSubview(blue); // its frame is now in green's coordinates
    EXPECT_PIXEL(pixel(50, 50), {0, 255, 0});
    EXPECT_PIXEL(pixel(70, 70), {0, 0, 255});
    root->addSubview(blue);
    EXPECT_PIXEL(pixel(50, 50), {0, 0, 255});
}

} // namespace
} // namespace kestrin::test
