#include "KestrinViewTest.h"

namespace kestrin {

using namespace platform;
using namespace test;

struct Sizing : KestrinViewTest {
    std::string viewportScript(double w, double h) {
        return format("window.__KRJ_Native_IN.onViewportUpdate(%f,%f);", w, h);
    }
    /// The last viewport that the page was told.
    std::string lastViewport() {
        std::string last;
        for (const auto& script : takeScripts())
            if (script.starts_with("window.__KRJ_Native_IN.onViewportUpdate"))
                last = script;
        return last;
    }
    void expectLayers() {
        ASSERT_EQ(view->subviews().size(), 4U);
        EXPECT_EQ(view->subviews()[0], view->getCameraView());
        EXPECT_EQ(view->subviews()[1], view->getContentView());
        for (const auto& layer : view->subviews())
            EXPECT_EQ(layer->frame(), view->bounds());
    }
};

TEST_F(Sizing, SettlesTheFirstShow) {
    setup();
    view->start();
    runMain();
    EXPECT_EQ(lastViewport(), viewportScript(1500, 2668));
    EXPECT_EQ(view->frame().size, (Size{750, 1334}));
    expectLayers();
    // One resize for the viewport that the first show set, none for itself.
    EXPECT_EQ(logged("Kestrin - Renderer - updating viewport w=1500 h=2668"), 1);
    EXPECT_EQ(logged("KestrinView - resize - w=750.000000 h=1334.000000"), 2) << "and one from construction";
}

TEST_F(Sizing, ResizesShownAndHidden) {
    startUp();
    view->resize(375, 667);
    EXPECT_EQ(lastViewport(), viewportScript(750, 1334));
    EXPECT_EQ(view->frame().size, (Size{375, 667}));
    expectLayers();

    view->hide();
    EXPECT_TRUE(view->subviews().empty());
    takeLog();
    view->resize(300, 400);
    // Not set by the resize itself, but by the hierarchy that it brings back.
    const auto lines = takeLog();
    const auto position = [&](const char* line) { return std::ranges::find(lines, line) - lines.begin(); };
    EXPECT_GT(position("Kestrin - Renderer - updating viewport w=600 h=800"),
              position("KestrinView - show - Placing view hierarchy for display."));
    expectLayers();
}

TEST_F(Sizing, SettlesWhateverTheSize) {
    startUp();
    for (const Size size :
         {Size{375.3, 667.8}, Size{0.25, 0.75}, Size{0, 0}, Size{1e300, 5}, Size{33, 1e9}}) {
        view->resize(size.width, size.height);
        ASSERT_EQ(view->subviews().size(), 4U);
        EXPECT_LE(std::abs(view->frame().size.height - size.height), 0.5);
    }
}

TEST_F(Sizing, KnowsTheScreen) {
    startUp();
    system->app.screen = {{400, 300}, 1, 1.1};
    takeLog();
    view->resizeToScreenSizeUnscaled();
    EXPECT_EQ(takeLog()[0], "KestrinView - resize - w=400.000000 h=300.000000");
    view->resizeToScreenSize();
    // The scale passes through single precision.
    EXPECT_EQ(takeLog()[0], "KestrinView - resize - w=440.000010 h=330.000007");
}

TEST_F(Sizing, FollowsTheToolkit) {
    view->toolkitResized({800, 600});
    EXPECT_EQ(view->frame().size, (Size{800, 600})) << "at once while hidden";
    startUp();
    EXPECT_EQ(view->frame().size, (Size{800, 600}));
    EXPECT_EQ(view->getContentView()->frame().size, (Size{800, 600}));

    view->toolkitResized({640, 480});
    view->toolkitResized({640, 480});
    view->toolkitResized({0, 480});
    view->toolkitResized({1024, 768});
    EXPECT_EQ(view->frame().size, (Size{800, 600})) << "not inside the toolkit's layout";
    runMain();
    EXPECT_EQ(view->frame().size, (Size{1024, 768}));
    EXPECT_EQ(logged("KestrinView - resize - w=640.000000 h=480.000000"), 0);
    EXPECT_EQ(lastViewport(), viewportScript(2048, 1536));
    expectLayers();

    view->toolkitResized({500, 500});
    view->hide();
    runMain();
    EXPECT_EQ(view->frame().size, (Size{500, 500}));
    EXPECT_TRUE(view->subviews().empty()) << "following does not show a hidden view";
}

TEST_F(Sizing, KeepsTheToolkitsSizeAgainstALateOne) {
    startUp();
    post("onResumeAREngine");
    view->toolkitResized({400, 300});
    runMain();
    // The session turns, which swaps the viewport; the window has its own next size before main hears of it.
    system->app.interfaceOrientation.set(3);
    offMain([&] { session().send(makeFrame(1)); });
    runMain();
    system->app.interfaceOrientation.set(1);
    view->toolkitResized({310, 420});
    offMain([&] { session().send(makeFrame(2)); });
    runMain();
    EXPECT_EQ(view->frame().size, (Size{310, 420}));
    EXPECT_EQ(lastViewport(), viewportScript(620, 840));
}

TEST_F(Sizing, SitsInItsParent) {
    const auto parent = makeView<View>();
    parent->setFrame({{7, 7}, {200, 100}});
    takeLog();
    view->addToParentView(nullptr);
    EXPECT_EQ(takeLog(),
              Lines{"Kestrin::Content View::addToSubview::Cannot add since view argument is NULL."});
    view->addToParentView(parent);
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {200, 100}}));
    parent->setFrame({{0, 0}, {300, 150}});
    EXPECT_EQ(view->frame().size, (Size{300, 150}));
    startUp();
    view->setFrame({{9, 9}, {1, 1}});
    view->clipToParent();
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {300, 150}}));
    expectLayers();
}

} // namespace kestrin
