#include "TriggerTest.h"

#include <thread>

namespace kestrin::test {

using namespace platform;

namespace {

std::shared_ptr<ArImageAnchor> makeTrigger(const std::string& name, const Vector4& position = {0, 0, 0, 1}) {
    auto anchor = std::make_shared<ArImageAnchor>();
    anchor->identifier = "id of " + name;
    anchor->transform = Matrix::identity();
    anchor->transform[3] = position;
    anchor->referenceImage =
        std::make_shared<ArReferenceImage>(ArReferenceImage{name, makeImage(200, 100), 0.5});
    return anchor;
}

std::shared_ptr<ArPlaneAnchor> makePlane() {
    auto plane = std::make_shared<ArPlaneAnchor>();
    plane->identifier = "P";
    return plane;
}

} // namespace

struct TriggerTrackingTest : TriggerTest {
    void load(const Lines& ids) {
        serve(ids);
        beginLoad();
        endLoad();
    }
    Lines newestImages() {
        const auto runs = session().runs();
        return namesOf(runs.back().configuration.images);
    }
};

TEST_F(TriggerTrackingTest, FollowsImagesWithoutAWorldUnlessAFlagNeedsOne) {
    load({"a"});
    struct Case {
        double level;
        const char* flag;
        bool onlyImages, focus;
    };
    const Case cases[] = {{12, "", true, true},
                          {12, "autofocus", true, false},
                          {12, "snap", false, false},
                          {12, "triggerlock", false, false},
                          {12, "lockonloss", false, false},
                          {11.3, "autofocus", false, true}};
    for (const Case& c : cases) {
        system->level = c.level;
        useFlags({"nativetriggers", "triggerimage", c.flag});
        listener->take();
        processor->setup(480, 640);
        const auto configuration = session().runs().back().configuration;
        EXPECT_EQ(configuration.kind == ArConfiguration::Kind::imageOnly, c.onlyImages) << c.flag;
        EXPECT_EQ(configuration.autoFocusEnabled, c.focus) << c.flag;
        EXPECT_EQ(configuration.maximumNumberOfTrackedImages, c.onlyImages ? 1 : 0);
        EXPECT_TRUE(configuration.lightEstimationEnabled);
        EXPECT_EQ(newestImages(), Lines{"a"});
        EXPECT_EQ(listener->take()[1], "trigger started");
    }
    // Images alone are no reason to report them instead of planes.
    useFlags({"nativetriggers", "snap"});
    processor->setup(480, 640);
    EXPECT_EQ(newestImages(), Lines{"a"});
    EXPECT_EQ(listener->take(), (Lines{"plane clear", "plane started"}));
}

TEST_F(TriggerTrackingTest, StartsOnceItsTriggersAreThere) {
    serve({"a"});
    beginLoad();
    processor->setup(480, 640);
    processor->start();
    processor->startCamera();
    EXPECT_EQ(listener->take(), Lines{"reason 5"});
    endLoad();
    EXPECT_EQ(newestImages(), Lines{"a"});
    EXPECT_EQ(listener->take(),
              (Lines{"trigger clear", "trigger started", "projection", "viewport 480.0 640.0", "projection",
                     "viewport 480.0 640.0", "reason 1"}));
    session().send(frame(1, [](FakeArCamera& c) { c.reason = TrackingReason::initializing; }));
    EXPECT_EQ(listener->take(), Lines{"tracked markerless 1.0"}) << "that was told already";
    // Every later load runs the session again.
    for (const Lines& ids : {Lines{"b", "c"}, Lines{}}) {
        load(ids);
        EXPECT_EQ(newestImages(), (Lines{"b", "c"})) << "an empty load changes nothing";
    }
    EXPECT_EQ(session().runs().size(), 3U);
    processor->detach();
    load({"d"});
    EXPECT_EQ(session().runs().size(), 3U) << "nobody is left to run for";
}

TEST_F(TriggerTrackingTest, ReportsTriggersBesidesPlanes) {
    run();
    const auto lost = makeTrigger("lost");
    lost->isTracked = false;
    session().add({makePlane(), makeTrigger("t"), lost});
    EXPECT_EQ(listener->take(),
              (Lines{"trigger added t 0.5 0.2", "trigger added lost 0.5 0.2", "plane added P 0.0 0.0"}));
    session().update({lost, makeTrigger("t"), makePlane()});
    EXPECT_EQ(listener->take(), (Lines{"trigger updated t 0.5 0.2", "plane updated P 0.0 0.0"}));
    EXPECT_EQ(session().removedAnchors(), Lines{"id of lost"});
    session().remove({makePlane(), lost});
    EXPECT_EQ(listener->take(), Lines{"trigger removed lost"}) << "planes are not taken back";
    processor->stop();
    EXPECT_EQ(listener->take(), (Lines{"lost markerless", "trigger clear"}));
    // In a world a lost image is reported as it is.
    flag("lockonloss");
    run();
    session().update({lost});
    EXPECT_EQ(listener->take(), Lines{"trigger updated lost 0.5 0.2"});
    EXPECT_EQ(session().removedAnchors().size(), 1U);
}

TEST_F(TriggerTrackingTest, SnapsTheNearestStrictlyInside) {
    EXPECT_EQ(processor->snapMarker(), std::nullopt) << "no frame";
    run();
    const auto seen = frame(1, [](FakeArCamera& camera) { camera.pose[3] = {0, 0, 10, 1}; });
    // The fake camera sees a point where its x and y say.
    seen->anchors = {makePlane(),
                     makeTrigger("edge", {0, 5, 10, 1}),
                     makeTrigger("other edge", {480, 5, 10, 1}),
                     makeTrigger("far", {100, 600, 10, 1}),
                     makeTrigger("near", {100, 1, -40, 1}),
                     makeTrigger("as near", {100, 1, 60, 1}),
                     makeTrigger("below", {1, 640, 10, 1})};
    session().send(seen);
    takeLog();
    EXPECT_EQ(processor->snapMarker(), "near");
    const auto lines = takeLog();
    EXPECT_EQ(Lines(lines.begin() + 2, lines.begin() + 4),
              (Lines{"projection - (100.000000 600.000000) viewport - (480.000000 640.000000) angle - "
                     "(105.000000)",
                     "passed - far"}));
    seen->anchors.resize(3);
    EXPECT_EQ(processor->snapMarker(), std::nullopt);
    system->level = 11.2;
    takeLog();
    EXPECT_TRUE(!processor->snapMarker() && takeLog().empty());
}

// Loads end, on several workers, while others set up, report and snap; the sanitizers watch.
TEST_F(TriggerTrackingTest, SetsUpBetweenThreads) {
    processor->setup(480, 640); // makes the list, on main
    processor->startCamera();
    system->queues.startWorkerThreads(3);
    std::atomic<bool> done = false;
    std::thread tracking([&] {
        for (int i = 0; !done; ++i) {
            auto next = frame(i);
            next->anchors = {makeTrigger("t")};
            session().send(next);
            session().update(next->anchors);
        }
    });
    std::thread host([&] {
        while (!done) {
            processor->reset();
            processor->snapMarker();
            processor->stop();
        }
    });
    Lines ids;
    for (int i = 0; i < 40; ++i) {
        ids.push_back(std::to_string(i));
        serve(ids);
        beginLoad(); // all but the newest are in the cache by now
        runMain();
        system->queues.waitForWorkers();
        runMain();
    }
    done = true;
    tracking.join();
    host.join();
    EXPECT_EQ(namesOf(list->getARKitTriggerSet()), ids) << "in order, whoever read them";
}

} // namespace kestrin::test
