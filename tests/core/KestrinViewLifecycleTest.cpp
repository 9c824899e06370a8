#include "KestrinViewTest.h"

#include <optional>

namespace kestrin {

using namespace platform;
using namespace test;

struct Lifecycle : KestrinViewTest {
    /// What a label of an overlay says; nothing while it is hidden.
    std::string textOf(const char* overlay, const char* label) {
        const auto part = system->viewToolkit.loaded[overlay].part<Label>(label);
        return part->isHidden() ? "" : part->text();
    }
};

TEST_F(Lifecycle, StartsInOrder) {
    takeLog();
    setup();
    view->start();
    EXPECT_EQ(takeLog(),
              (Lines{"KestrinView - setup - Running Initial engine setup.",
                     "KestrinFeatureFlags - Sync Feature List from " + flagsAddress("shop.example", "A1"),
                     "KestrinView - registerCallbacks - Registering callback events. This only needs to "
                     "happen once per instance.",
                     "KestrinView - start - Loading primary UI view."}))
        << "the flags come later";
    runMain();
    const Lines lines = takeLog();
    auto at = lines.begin();
    for (const char* step :
         {"KestrinView - start - Synced Feature Flags, Init subsystems.",
          "KestrinTriggerList - Skipping Marker Loading since nativetriggers Feature Flag is not set.",
          "KestrinView - start - Asking camera access.",
          "KestrinView - start - Camera access granted, proceeding.",
          "ARKitMarkerlessProcessor - Setup ARKit Started.", "KestrinView - start - Launching WebView.",
          "WebView - Launching URL - https://shop.example/template/index.html",
          "KestrinView - show - Placing view hierarchy for display."}) {
        at = std::find(at, lines.end(), step);
        ASSERT_NE(at, lines.end()) << step;
    }
    ASSERT_EQ(view->subviews().size(), 5U);
    EXPECT_EQ(view->subviews()[0], view->getCameraView());
    EXPECT_EQ(view->subviews()[2], view->getContentView());
    EXPECT_TRUE(page().inspectable) << "the settings are in debug mode";
}

TEST_F(Lifecycle, SaysWhyItCannotStart) {
    int failures = 0;
    const auto start = [&] {
        setup();
        view->startWithCallback([&] { ++failures; });
    };
    const auto expectFailure = [&](int count, const char* title, const char* body) {
        EXPECT_EQ(failures, count);
        EXPECT_FALSE(view->subviews().back()->isHidden());
        EXPECT_EQ(textOf("ErrorPreview", "title"), title);
        EXPECT_EQ(textOf("ErrorPreview", "body"), body);
    };
    system->worldTracking.supported = false;
    start();
    expectFailure(1, "Uh Oh!",
                  "Sorry this device does not support this Augmented Reality experience. We are unable to "
                  "launch the experience.");
    system->worldTracking.supported = true;
    system->person.status = Authorization::notDetermined;
    start();
    EXPECT_TRUE(view->subviews().back()->isHidden()) << "a start is a new beginning";
    runMain();
    offMain([&] { system->person.answerCamera(false); });
    EXPECT_EQ(failures, 1) << "only on main";
    runMain();
    expectFailure(
        2, "Oops!",
        "We don\u2019t have access to your camera and need this to make Augmented Reality function. "
        "You can grant access in Settings.");
}

TEST_F(Lifecycle, SaysWhatAStartWaitsFor) {
    using Delay = KestrinView::StartDelay;
    std::vector<std::optional<Delay>> told;
    view->onStartDelayed([&](const auto& delay) { told.push_back(delay); });
    const auto expectAfter = [&](double seconds, std::optional<Delay> delay, const char* text) {
        advance(seconds);
        ASSERT_FALSE(told.empty());
        EXPECT_EQ(told.back(), delay);
        EXPECT_EQ(textOf("SdkLoading", "message"), text);
    };
    setup();
    system->queues.drop(); // the answer does not come
    view->start();
    advance(7.9);
    EXPECT_TRUE(told.empty());
    expectAfter(0.2, Delay::server, "Still waiting for shop.example to answer.");
    system->server.answer(flagsAddress("shop.example", "A1"), "");
    setup();
    expectAfter(8, Delay::unreachableServer,
                "No answer from shop.example. Please check the internet connection and start again.");
    answerFlags("shop.example", "A1", "[]");
    system->person.status = Authorization::notDetermined;
    setup();
    expectAfter(0, std::nullopt, "");
    expectAfter(8, Delay::cameraAccess, "Waiting for your permission to use the camera.");
    system->person.answerCamera(true);
    expectAfter(0, std::nullopt, "");
    expectAfter(8, Delay::page, "Still loading the experience from shop.example.");
    post("onWebGLReady");
    expectAfter(20, std::nullopt, "");
    view->start();
    view->destroy();
    advance(20);
    EXPECT_EQ(told.size(), 7U) << "each once, and none after destroy";
}

TEST_F(Lifecycle, PausesAndResumesForTheHost) {
    startUp();
    view->pause();
    EXPECT_EQ(takeScripts(), Lines{call("onNativeResign();")});
    EXPECT_FALSE(session().isRunning());
    view->resume();
    EXPECT_EQ(takeScripts().back(), call("onNativeActivate();"));
    EXPECT_TRUE(session().isRunning());
    view->pause();
    post("onPauseAREngine");
    takeLog();
    view->resume();
    EXPECT_EQ(logged("CVManager - resume"), 0) << "the page has stopped it";
}

TEST_F(Lifecycle, TellsThePageOfTheApplication) {
    startUp();
    const auto raise = [&] {
        for (const char* name : {kWillResignActive, kDidBecomeActive, kDidEnterBackground})
            notify(name);
        return takeScripts();
    };
    EXPECT_EQ(raise(), (Lines{call("onNativeResign();"), call("onNativeActivate();"),
                              call("onNativeEnterBackground();")}));
    EXPECT_EQ(takeLog(), (Lines{"KestrinView - appWillResignActive", "KestrinView - appActivated",
                                "KestrinView - appDeactivated"}));
    KestrinView::isPhotoAccessMinimize = true;
    EXPECT_EQ(raise(), Lines{call("onNativeEnterBackground();")});
    notify(kWillTerminate);
    EXPECT_TRUE(raise().empty());
}

TEST_F(Lifecycle, DivertsToMainAndIsUsableAgainAfterDestroy) {
    startUp();
    post("onResumeAREngine");
    EXPECT_TRUE(session().isRunning());
    for (const auto& [name, operation] : divertedOperations()) {
        takeLog();
        offMain(operation);
        EXPECT_TRUE(takeLog().empty()) << name;
        runMain();
        EXPECT_EQ(takeLog().front(),
                  format("KestrinView - %@ - Diverting call to main thread. Expect delayed results.", name));
    }
    EXPECT_FALSE(session().isRunning());
    EXPECT_EQ(page().loads.back().url, "about:blank");
    EXPECT_TRUE(view->subviews().empty());
    takeLog();
    notify(kWillResignActive);
    view->start();
    EXPECT_EQ(takeLog(), Lines{"KestrinView - start - Cannot start since setup() has not been called."});
    startUp();
    EXPECT_EQ(system->webToolkit.made, 1) << "the page is kept";
    EXPECT_EQ(view->frame().size, (Size{750, 1334})) << "off main it is scaled all the same";
    view->resizeToScreenSizeUnscaled();
    EXPECT_EQ(view->frame().size, (Size{375, 667}));
}

TEST_F(Lifecycle, FollowsTheToolkit) {
    startUp();
    view->toolkitResized({640, 480});
    view->toolkitResized({0, 480});
    view->toolkitResized({1024, 768});
    EXPECT_EQ(view->frame().size, (Size{750, 1334})) << "not inside the toolkit's layout";
    runMain();
    EXPECT_EQ(view->frame().size, (Size{1024, 768}));
    EXPECT_EQ(logged("KestrinView - resize - w=640.000000 h=480.000000"), 0);
    EXPECT_GE(std::ranges::count(takeScripts(), call("onViewportUpdate(2048.000000,1536.000000);")), 1);
    view->toolkitResized({500, 500});
    view->hide();
    runMain();
    EXPECT_TRUE(view->subviews().empty()) << "following does not show a hidden view";
}

} // namespace kestrin
