#include "tracking/CVManager.h"
#include "RecordingListener.h"
#include "services/util/Singleton.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <algorithm>

namespace kestrin {

using namespace platform;
using namespace test;

struct CVManagerTest : PlatformTest {
    CVManagerTest() {
        resetSingletons();
        system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]";
        manager = CVManager::initWithKeys(nullptr);
        manager->addDelegate(listener);
    }
    ~CVManagerTest() override {
        manager->pause();
        manager->detach();
    }
    FakeArSession& session() { return *system->worldTracking.newest(); }
    int viewports(const Lines& lines, const std::string& which) {
        return int(std::ranges::count(lines, "viewport " + which));
    }

    std::shared_ptr<RecordingListener> listener = std::make_shared<RecordingListener>();
    std::shared_ptr<CVManager> manager;
};

TEST_F(CVManagerTest, SetsUpBeforeItsGatesAndListeners) {
    // What the set-up reported is in the log, but it opened no gate.
    EXPECT_EQ(takeLog(),
              (Lines{"ARKitMarkerlessProcessor - Setup ARKit Started.", "CVManager - onPlaneClear",
                     "CVManager - onPlaneStarted", "Kestrin - Renderer - updating viewport w=480 h=640",
                     "Kestrin - Renderer - updating projection w=480 h=640", "Kestrin - Orientation=PORTRAIT",
                     "ARKitMarkerlessProcessor - Setup ARKit Finished."}));
    const auto plane = std::make_shared<ArPlaneAnchor>();
    session().add({plane});
    EXPECT_TRUE(listener->take().empty());
    manager->reset();
    listener->take();
    session().add({plane});
    EXPECT_EQ(listener->take(), Lines{"plane added  0.0 0.0"});
}

TEST_F(CVManagerTest, GatesTheDetailEvents) {
    takeLog();
    const auto sendAll = [&] {
        manager->onTriggerAdded("t", {}, 1, 2);
        manager->onTriggerUpdated("t", {}, 1, 2);
        manager->onTriggerRemoved("t");
        manager->onPlaneAdded("p", {}, 1, 2);
        manager->onPlaneUpdated("p", {}, 1, 2);
        const auto mesh = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{9, 0, 0}}, {4}});
        manager->onPlaneGeometryUpdated("p", {mesh, mesh->vertices.data()}, 1,
                                        {mesh, mesh->triangleIndices.data()}, 1);
        manager->onPlaneRemoved("p");
    };
    const Lines triggers{"trigger added t 1.0 2.0", "trigger updated t 1.0 2.0", "trigger removed t"};
    const Lines planes{"plane added p 1.0 2.0", "plane updated p 1.0 2.0", "plane geometry p 1 9.0 1 4",
                       "plane removed p"};
    sendAll();
    EXPECT_TRUE(listener->take().empty());
    EXPECT_TRUE(takeLog().empty());

    manager->onTriggerStarted();
    EXPECT_EQ(listener->take(), Lines{"trigger started"});
    sendAll();
    EXPECT_EQ(listener->take(), triggers);
    manager->onTriggerClear();
    EXPECT_EQ(listener->take(), Lines{"trigger clear"});
    EXPECT_EQ(takeLog(), (Lines{"CVManager - onTriggerStarted", "CVManager - onTriggerAdded - t",
                                "CVManager - onTriggerRemoved - t", "CVManager - onTriggerClear"}));

    manager->onPlaneStarted();
    sendAll();
    manager->onPlaneClear();
    sendAll();
    const auto lines = listener->take();
    EXPECT_EQ(Lines(lines.begin() + 1, lines.end() - 1), planes);
    EXPECT_EQ(takeLog(), (Lines{"CVManager - onPlaneStarted", "CVManager - onPlaneClear"}));
}

TEST_F(CVManagerTest, RelaysWhatHasNoGate) {
    takeLog();
    manager->onMarkerFound("m");
    manager->onMarkerLost("m");
    manager->onMarkerTracked("m", {}, Matrix::identity(), 1.5);
    manager->onUpdateProjectionMatrix(Matrix::identity());
    manager->onUpdateViewport({3, 4});
    manager->onLightEstimate(0.5F);
    manager->onTrackingReasonChange(5);
    EXPECT_EQ(listener->take(), (Lines{"found m", "lost m", "tracked m 1.5", "projection", "viewport 3.0 4.0",
                                       "light 0.500000", "reason 5"}));
    EXPECT_EQ(listener->pose, Matrix::identity());
    EXPECT_FALSE(listener->mvpIsView);
    EXPECT_EQ(takeLog(), (Lines{"CVManager - onMarkerFound - m", "CVManager - onMarkerLost - m"}));
}

TEST_F(CVManagerTest, DeliversWhereItIsTold) {
    offMain([&] { manager->onLightEstimate(1); });
    EXPECT_EQ(listener->take().size(), 1U) << "on the reporting thread";
    EXPECT_NE(listener->thread, std::this_thread::get_id());

    manager->setCallbacksOnMainThread(true);
    manager->onLightEstimate(1);
    EXPECT_EQ(listener->take().size(), 1U) << "at once on main";

    takeLog();
    offMain([&] {
        auto mesh = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{9, 0, 0}}, {4}});
        Matrix pose = Matrix::identity();
        manager->onPlaneStarted();
        manager->onPlaneGeometryUpdated("p", {mesh, mesh->vertices.data()}, 1,
                                        {mesh, mesh->triangleIndices.data()}, 1);
        manager->onPlaneAdded("p", pose, 1, 1);
        pose = {};
        manager->onPlaneClear(); // shuts the gate for later reports, not for what is on its way
    });
    EXPECT_EQ(takeLog(), (Lines{"CVManager - onPlaneStarted", "CVManager - onPlaneClear"}));
    EXPECT_TRUE(listener->take().empty());
    runMain();
    EXPECT_EQ(listener->take(),
              (Lines{"plane started", "plane geometry p 1 9.0 1 4", "plane added p 1.0 1.0", "plane clear"}));
    EXPECT_EQ(listener->pose, Matrix::identity());
    EXPECT_EQ(listener->thread, std::this_thread::get_id());
}

TEST_F(CVManagerTest, KeepsItsListenersUntilAllGo) {
    takeLog();
    manager->addDelegate(listener);
    EXPECT_EQ(takeLog(), Lines{"CVManager - addDelegate - delegate instance already exists in list. Will not "
                               "be added."});
    auto second = std::make_shared<RecordingListener>();
    Lines heard;
    listener->whenViewportChanges = [&](const Size&) { heard.push_back("first"); };
    second->whenViewportChanges = [&](const Size&) {
        heard.push_back("second");
        manager->removeAllDelegates(); // the walk goes on over the list it began with
    };
    const auto third = std::make_shared<RecordingListener>();
    manager->addDelegate(second);
    manager->addDelegate(third);
    manager->removeDelegate(*listener);
    EXPECT_EQ(manager->callback_delegates.boxes()->size(), 3U) << "removal drops nothing";
    manager->onUpdateViewport({1, 1});
    EXPECT_EQ(heard, (Lines{"first", "second"}));
    EXPECT_EQ(third->take().size(), 1U);
    EXPECT_TRUE(manager->callback_delegates.boxes()->empty());
}

TEST_F(CVManagerTest, SkipsListenersThatHaveDied) {
    auto second = std::make_shared<RecordingListener>();
    manager->addDelegate(second);
    second.reset();
    manager->onLightEstimate(1);
    EXPECT_EQ(listener->take().size(), 1U);
}

TEST_F(CVManagerTest, PausesAndResumes) {
    manager->startMarkerlessTracking();
    takeLog();
    manager->pause();
    EXPECT_EQ(takeLog(), (Lines{"CVManager - pause", "CVManager - stopping markerless tracking",
                                "ARKitMarkerlessProcessor::stop", "CVManager - onMarkerLost - markerless",
                                "CVManager - onPlaneClear", "ARKitMarkerlessProcessor::pause"}));
    session().send(makeFrame(1));
    EXPECT_FALSE(session().isRunning());
    manager->resume();
    EXPECT_TRUE(session().isRunning());
    listener->take();
    session().send(makeFrame(2));
    EXPECT_EQ(listener->take(), Lines{"tracked markerless 2.0"});
    manager->cleanContext();
    EXPECT_EQ(session().runs().back().options, unsigned(kRemoveExistingAnchors));
}

TEST_F(CVManagerTest, ShowsFramesBehindThePage) {
    FakeRenderPeer& peer = *system->graphics.newest;
    manager->resume();
    auto pictured = makeFrame(1);
    const auto picture = std::make_shared<FakePixelBuffer>(64, 48);
    pictured->capturedImage = picture;
    session().send(pictured);
    manager->signal();
    peer.draw(); // locked by the camera's start: one signal lets it through
    EXPECT_EQ(system->graphics.device->drawn[1]->buffer, picture);
}

TEST_F(CVManagerTest, PlacesItsView) {
    const auto parent = makeView<View>();
    parent->setFrame({{5, 5}, {375, 667}});
    listener->take();
    manager->addToParentView(parent);
    EXPECT_EQ(viewports(listener->take(), "750.0 1334.0"), 1);
    EXPECT_EQ(manager->getRenderView()->superview(), parent);
    EXPECT_EQ(manager->getRenderView()->frame(), (Rect{{0, 0}, {375, 667}}));
    EXPECT_EQ(manager->getViewportSize(), (Size{375, 667}));
    manager->setViewport({375.9, 667.9});
    EXPECT_EQ(viewports(listener->take(), "375.0 667.0"), 1);
    manager->getRenderView()->setFrame({});
    manager->clipToParent();
    EXPECT_EQ(manager->getViewportSize(), (Size{375, 667}));
    manager->removeFromParentView();
    EXPECT_EQ(manager->getRenderView()->superview(), nullptr);
    takeLog();
    manager->addToParentView(nullptr);
    EXPECT_EQ(takeLog(), Lines{"CVManager - addToSubview - cannot add since view argument is NULL."});

    offMain([&] {
        manager->addToParentView(parent);
        manager->setViewport({20, 10});
        manager->clipToParent();
        manager->removeFromParentView();
    });
    EXPECT_TRUE(takeLog().empty());
    runMain();
    EXPECT_EQ(viewports(listener->take(), "20.0 10.0"), 1);
    EXPECT_EQ(manager->getRenderView()->superview(), nullptr);
    manager->setViewport({1e300, -1e300}); // kept within whole numbers
}

TEST_F(CVManagerTest, MeasuresTheScreen) {
    EXPECT_EQ(manager->getScreenSize(), (Size{750, 1334}));
    EXPECT_EQ(manager->getScreenSizeUnscaled(), (Size{375, 667}));
    EXPECT_TRUE(manager->isRetinaDisplay());
    system->app.screen.scale = 1;
    EXPECT_FALSE(manager->isRetinaDisplay());
    system->app.screen.scale = 2;
    system->app.screen.hasDisplayLink = false;
    EXPECT_FALSE(manager->isRetinaDisplay());
}

TEST_F(CVManagerTest, DoesNothingWithoutWorldTracking) {
    system->worldTracking.supported = false;
    EXPECT_FALSE(CVManager::checkARKitSupport());
    takeLog();
    const auto bare = CVManager::initWithKeys(nullptr);
    bare->reset();
    bare->cleanContext();
    bare->startMarkerlessTracking();
    bare->startMarkerlessPlacement();
    bare->startCamera();
    bare->signal();
    bare->addToParentView(makeView<View>());
    bare->clipToParent();
    bare->removeFromParentView();
    bare->setViewport({1, 1});
    bare->detach();
    EXPECT_TRUE(takeLog().empty());
    EXPECT_EQ(bare->getRenderView(), nullptr);
    EXPECT_EQ(bare->getViewportSize(), Size());
    bare->pause();
    bare->resume();
    EXPECT_EQ(takeLog(),
              (Lines{"CVManager - pause", "CVManager - stopping markerless tracking", "CVManager - resume"}));
}

TEST_F(CVManagerTest, LetsGoOfItselfOnceDetached) {
    std::weak_ptr<CVManager> watched;
    {
        const auto doomed = CVManager::initWithKeys(nullptr);
        watched = doomed;
        doomed->resume();
        doomed->pause();
        doomed->detach();
    }
    EXPECT_TRUE(watched.expired());
}

} // namespace kestrin
