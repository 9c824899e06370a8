#include "tracking/CVManager.h"
#include "RecordingListener.h"
#include "services/util/Singleton.h"
#include "support/FakePlatform.h"

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
    const auto sendAll = [&] {
        manager->onTriggerAdded("t", {}, 1, 2);
        manager->onTriggerUpdated("t", {}, 1, 2);
        manager->onTriggerRemoved("t");
    };
    sendAll();
    EXPECT_TRUE(listener->take().empty());
    manager->onTriggerStarted();
    sendAll();
    manager->onTriggerClear();
    sendAll();
    EXPECT_EQ(listener->take(), (Lines{"trigger started", "trigger added t 1.0 2.0",
                                       "trigger updated t 1.0 2.0", "trigger removed t", "trigger clear"}));
}

TEST_F(CVManagerTest, DeliversWhereItIsTold) {
    offMain([&] { manager->onLightEstimate(1); });
    EXPECT_EQ(listener->take().size(), 1U) << "on the reporting thread";
    EXPECT_NE(listener->thread, std::this_thread::get_id());
    manager->setCallbacksOnMainThread(true);
    manager->onLightEstimate(1);
    EXPECT_EQ(listener->take().size(), 1U) << "at once on main";
    offMain([&] {
        // The mesh is held until it is delivered.
        auto mesh = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{9, 0, 0}}, {4}});
        manager->onPlaneStarted();
        manager->onPlaneGeometryUpdated("p", {mesh, mesh->vertices.data()}, 1,
                                        {mesh, mesh->triangleIndices.data()}, 1);
        manager->onPlaneClear(); // shuts the gate for later reports, not for what is on its way
    });
    EXPECT_TRUE(listener->take().empty());
    runMain();
    EXPECT_EQ(listener->take(), (Lines{"plane started", "plane geometry p 1 9.0 1 4", "plane clear"}));
    EXPECT_EQ(listener->thread, std::this_thread::get_id());
}

TEST_F(CVManagerTest, KeepsItsListenersUntilAllGo) {
    manager->addDelegate(listener); // which is there already
    const auto second = std::make_shared<RecordingListener>();
    manager->addDelegate(second);
    manager->removeDelegate(*listener); // drops nothing
    // The walk goes on over the list it began with.
    listener->whenViewportChanges = [&](const Size&) { manager->removeAllDelegates(); };
    manager->onUpdateViewport({1, 1});
    manager->onUpdateViewport({2, 2});
    EXPECT_EQ(listener->take(), Lines{"viewport 1.0 1.0"});
    EXPECT_EQ(second->take(), Lines{"viewport 1.0 1.0"});
}

} // namespace kestrin
