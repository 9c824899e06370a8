#include "KestrinViewTest.h"

#include <boost/json/object.hpp>

namespace kestrin {

using namespace platform;
using namespace test;

using Lifecycle = KestrinViewTest;

namespace {
const Lines kMissingLayers{"AR", "UI", "Load", "Error"};

void addMissing(Lines& lines, const char* operation) {
    for (const auto& layer : kMissingLayers)
        lines.push_back(format("KestrinView - %@ - %@ View not initialised. Expect wrong visual results.",
                               operation, layer));
}
} // namespace

TEST_F(Lifecycle, IsBuiltHiddenWithItsOverlays) {
    Lines expected{"KestrinView - resize - w=750.000000 h=1334.000000",
                   "Kestrin - Kestrin View - Re-Clipping child views.",
                   "KestrinView - hide - Removing view hierarchy from display."};
    addMissing(expected, "hide");
    expected.push_back("KestrinView - show - Placing view hierarchy for display.");
    addMissing(expected, "show");
    EXPECT_EQ(takeLog(), expected);
    EXPECT_EQ(view->frame().size, (Size{750, 1334}));
    EXPECT_EQ(view->background(), kClear);
    ASSERT_EQ(view->subviews().size(), 2U);
    EXPECT_FALSE(view->subviews()[0]->isHidden());
    EXPECT_TRUE(view->subviews()[1]->isHidden());
    EXPECT_EQ(view->subviews()[0]->frame().size, (Size{750, 1334}));
    EXPECT_EQ(view->getCameraView(), nullptr);
    EXPECT_EQ(view->getContentView(), nullptr);
    EXPECT_EQ(view->getParentView(), view);
}

TEST_F(Lifecycle, RefusesBeforeSetup) {
    takeLog();
    bool failed = false;
    view->startWithCallback([&] { failed = true; });
    view->registerCallbacks();
    view->registerForEventCallback(0, [](const auto&) {});
    view->pause();
    view->resume();
    view->onTriggerStarted();
    EXPECT_EQ(takeLog(),
              (Lines{"KestrinView - start - Cannot start since setup() has not been called.",
                     "KestrinView - registerCallbacks - Event framework not initialised. Expect wrong "
                     "logical results.",
                     "KestrinView - registerForEventCallback - Event framework not initialised. Run setup() "
                     "before registering for event callbacks."}));
    runMain();
    EXPECT_FALSE(failed);
}

TEST_F(Lifecycle, StartsInOrder) {
    takeLog();
    setup();
    EXPECT_EQ(takeLog(),
              (Lines{"KestrinView - setup - Running Initial engine setup.",
                     "KestrinFeatureFlags - Sync Feature List from https://shop.example/api/v2/application/"
                     "A1?prune[relationships]=file,scene,page,collection,applicationbuild",
                     "KestrinView - registerCallbacks - Registering callback events. This only needs to "
                     "happen once per instance."}));
    bool failed = false;
    view->startWithCallback([&] { failed = true; });
    EXPECT_EQ(takeLog(), Lines{"KestrinView - start - Loading primary UI view."}) << "the flags come later";
    EXPECT_EQ(view->getCameraView(), nullptr);
    runMain();
    const Lines lines = takeLog();
    const Lines steps{"KestrinView - start - Synced Feature Flags, Init subsystems.",
                      "KestrinView - start - Asking camera access.",
                      "KestrinView - start - Camera access granted, proceeding.",
                      "ARKitMarkerlessProcessor - Setup ARKit Started.",
                      "KestrinView - start - Launching WebView.",
                      "WebView - Launching URL - https://shop.example/template/index.html",
                      "KestrinView - show - Placing view hierarchy for display."};
    auto at = lines.begin();
    for (const auto& step : steps) {
        at = std::find(at, lines.end(), step);
        ASSERT_NE(at, lines.end()) << step;
    }
    EXPECT_FALSE(failed);
    ASSERT_EQ(view->subviews().size(), 4U);
    EXPECT_EQ(view->subviews()[0], view->getCameraView());
    EXPECT_EQ(view->subviews()[1], view->getContentView());
    EXPECT_TRUE(view->subviews()[3]->isHidden()) << "the error overlay is on top";
}

TEST_F(Lifecycle, SetsUpTwiceWithoutRegisteringTwice) {
    setup();
    takeLog();
    view->setup(std::nullopt);
    EXPECT_EQ(logged("KestrinView - registerCallbacks - Events already added for this instance. Continuing "
                     "happily."),
              1);
    setup();
    startUp();
    post("onStopAREngine");
    EXPECT_EQ(logged("KestrinView - onStopAREngine - UI template call"), 1);
    notify(kDidEnterBackground);
    EXPECT_EQ(logged("KestrinView - appDeactivated"), 1);
}

TEST_F(Lifecycle, IsUsableAgainAfterDestroy) {
    startUp();
    int mine = 0;
    view->registerForEventCallback(12, [&](const auto& data) { mine += int(data.contains("eventName")); });
    post("onSendAnalytics");
    EXPECT_EQ(mine, 1);
    view->destroy();
    EXPECT_EQ(page().loads.back().url, "about:blank");
    EXPECT_TRUE(view->subviews().empty());
    EXPECT_FALSE(session().isRunning());
    takeLog();
    notify(kWillResignActive);
    post("onSendAnalytics");
    view->start();
    EXPECT_EQ(takeLog(), Lines{"KestrinView - start - Cannot start since setup() has not been called."});
    EXPECT_EQ(mine, 1);

    const int made = system->webToolkit.made;
    setup();
    view->start();
    runMain();
    EXPECT_EQ(system->webToolkit.made, made) << "the page is kept";
    EXPECT_EQ(logged("ARKitMarkerlessProcessor::reset"), 1);
    EXPECT_EQ(view->subviews().size(), 4U);
    takeLog();
    post("onStopAREngine");
    notify(kWillResignActive);
    EXPECT_EQ(logged("KestrinView - onStopAREngine - UI template call"), 1);
    EXPECT_EQ(logged("KestrinView - appWillResignActive"), 1);
}

TEST_F(Lifecycle, SaysWhyItCannotStart) {
    const auto error = [&](const char* part) {
        const auto panel = view->subviews().back()->subviews().at(0);
        for (const auto& child : panel->subviews())
            if (const auto label = std::dynamic_pointer_cast<Label>(child))
                if (label->text().starts_with(part))
                    return label->text();
        return std::string();
    };
    int failures = 0;
    system->worldTracking.supported = false;
    setup();
    view->startWithCallback([&] { ++failures; });
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(error("Uh"), "Uh Oh!");
    EXPECT_EQ(error("Sorry"), "Sorry this device does not support this Augmented Reality experience. We are "
                              "unable to launch the experience.");
    EXPECT_FALSE(view->subviews().back()->isHidden());

    system->worldTracking.supported = true;
    system->person.status = Authorization::notDetermined;
    view->startWithCallback([&] { ++failures; });
    EXPECT_TRUE(view->subviews().back()->isHidden());
    runMain();
    offMain([&] { system->person.answerCamera(false); });
    EXPECT_EQ(failures, 1) << "only on main";
    runMain();
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(error("Oops"), "Oops!");
    EXPECT_EQ(error("We"), "We don’t have access to your camera and need this to make Augmented Reality "
                           "function. You can grant access in Settings.");
    EXPECT_EQ(system->app.alerts.size(), 1U);
    EXPECT_EQ(view->getCameraView(), nullptr);
}

TEST_F(Lifecycle, StaysParkedAfterAFailedSync) {
    view->setup(settingsFor("nobody.example", "A1"));
    view->start();
    runMain();
    EXPECT_EQ(logged("KestrinFeatureFlags - Sync failed, no data."), 1);
    EXPECT_EQ(view->getCameraView(), nullptr);
    view->start(); // asks again, and is answered at once
    EXPECT_NE(view->getCameraView(), nullptr);
}

TEST_F(Lifecycle, OpensTheLocalTemplateByFlag) {
    answerFlags("shop.example", "A1", R"([\"local\"])");
    startUp();
    EXPECT_EQ(page().loads.back().url, "https://apps.kestrin.example/themes/sdkLive/local.html");
}

TEST_F(Lifecycle, PausesAndResumesForTheHost) {
    startUp();
    view->pause();
    EXPECT_EQ(takeScripts(), Lines{call("onNativeResign();")});
    EXPECT_FALSE(session().isRunning());
    notify(kDidBecomeActive);
    EXPECT_TRUE(takeScripts().empty()) << "paused by the host";
    takeLog();
    view->resume();
    EXPECT_EQ(takeScripts().back(), call("onNativeActivate();"));
    EXPECT_TRUE(session().isRunning());
    EXPECT_EQ(logged("CVManager - resume"), 1);
    notify(kDidBecomeActive);
    EXPECT_EQ(takeScripts(), Lines{call("onNativeActivate();")});
}

TEST_F(Lifecycle, ResumesNotWhatThePageStopped) {
    startUp();
    post("onStopAREngine");
    view->pause();
    takeScripts();
    takeLog();
    view->resume();
    EXPECT_EQ(takeScripts(), Lines{call("onNativeActivate();")});
    EXPECT_EQ(logged("CVManager - resume"), 0);
    // Also when the page stopped it while the host had paused.
    post("onResumeAREngine");
    view->pause();
    post("onPauseAREngine");
    takeLog();
    view->resume();
    EXPECT_EQ(logged("CVManager - resume"), 0);
}

TEST_F(Lifecycle, TellsThePageOfTheApplication) {
    startUp();
    const auto raise = [&] {
        for (const char* name : {kWillResignActive, kDidBecomeActive, kDidEnterBackground})
            notify(name);
    };
    raise();
    EXPECT_EQ(takeScripts(), (Lines{call("onNativeResign();"), call("onNativeActivate();"),
                                    call("onNativeEnterBackground();")}));
    EXPECT_EQ(takeLog(), (Lines{"KestrinView - appWillResignActive", "KestrinView - appActivated",
                                "KestrinView - appDeactivated"}));
    KestrinView::isPhotoAccessMinimize = true;
    raise();
    EXPECT_EQ(takeScripts(), Lines{call("onNativeEnterBackground();")});
    EXPECT_EQ(takeLog(), (Lines{"KestrinView - appWillResignActive",
                                "KestrinView - appWillResignActive - Blocked event due to camera access",
                                "KestrinView - appActivated",
                                "KestrinView - appActivated - Blocked event due to camera access",
                                "KestrinView - appDeactivated"}));
    notify(kWillTerminate);
    raise();
    EXPECT_TRUE(takeLog().empty());
    view->registerCallbacks();
    EXPECT_EQ(logged("KestrinView - registerCallbacks - Events already added for this instance. Continuing "
                     "happily."),
              1);
}

TEST_F(Lifecycle, LosesAShowWhileAHideFades) {
    startUp();
    const auto content = view->getContentView();
    view->onTrackingReasonChange(5);
    advance(0.1);
    view->onTrackingReasonChange(1); // not hidden yet, so there is nothing to show
    advance(2);
    EXPECT_TRUE(content->isHidden());
    view->onTrackingReasonChange(1);
    advance(0.6);
    EXPECT_FALSE(content->isHidden());
    EXPECT_EQ(content->opacity(), 1);
}

TEST_F(Lifecycle, DiesQuietlyWhileTheSessionRuns) {
    startUp();
    post("onResumeAREngine");
    const auto running = system->worldTracking.newest();
    const std::weak_ptr<View> camera = view->getCameraView(), whole = view;
    takeScripts();
    offMain([&] { view.reset(); });
    EXPECT_FALSE(whole.lock());
    runMain(); // destroyed here
    EXPECT_TRUE(camera.expired());
    EXPECT_FALSE(running->isRunning());
    running->send(makeFrame(1));
    notify(kWillResignActive);
    advance(5);
    EXPECT_EQ(logged("KestrinView - appWillResignActive"), 0);
}

TEST_F(Lifecycle, DivertsToMain) {
    startUp();
    const auto diverts = [&](std::function<void()> operation, const std::string& line,
                             const std::string& then) {
        takeLog();
        offMain(operation);
        EXPECT_TRUE(takeLog().empty()) << line;
        runMain();
        const Lines lines = takeLog();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines[0], line.empty() ? then : line);
        EXPECT_NE(std::ranges::find(lines, then), lines.end()) << line;
    };
    const auto line = [](const char* operation) {
        return format("KestrinView - %@ - Diverting call to main thread. Expect delayed results.", operation);
    };
    const auto parent = makeView<View>();
    diverts([&] { view->setup(settingsFor("shop.example", "A1")); }, line("setup"),
            "KestrinView - setup - Running Initial engine setup.");
    diverts([&] { view->start(); }, line("start"), "KestrinView - start - Loading primary UI view.");
    diverts([&] { view->hide(); }, line("hide"),
            "KestrinView - hide - Removing view hierarchy from display.");
    diverts([&] { view->show(); }, line("show"), "KestrinView - show - Placing view hierarchy for display.");
    diverts([&] { view->resize(10.5, 20); }, line("resize"),
            "KestrinView - resize - w=10.500000 h=20.000000");
    diverts([&] { view->resizeToScreenSize(); }, line("resizeToScreenSize"),
            "KestrinView - resize - w=750.000000 h=1334.000000");
    diverts([&] { view->resizeToScreenSizeUnscaled(); }, line("resizeToScreenSize"),
            "KestrinView - resize - w=750.000000 h=1334.000000");
    diverts([&] { view->clipToParent(); }, "", "Kestrin - Kestrin View - Re-Clipping child views.");
    diverts([&] { view->destroy(); }, line("destroy"),
            "KestrinView - destroy - Performing instance destruction. Run setup() again to continue re-using "
            "this instance.");
    offMain([&] { view->addToParentView(parent); });
    runMain();
    EXPECT_EQ(view->superview(), parent);
    offMain([&] { view->removeFromParentView(); });
    runMain();
    EXPECT_EQ(view->superview(), nullptr);
}

} // namespace kestrin
