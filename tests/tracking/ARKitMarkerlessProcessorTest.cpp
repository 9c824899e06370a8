#include "ProcessorTest.h"

#include <atomic>
#include <limits>
#include <thread>

namespace kestrin::test {

using namespace platform;

namespace {

std::shared_ptr<ArPlaneAnchor> makePlane() {
    auto plane = std::make_shared<ArPlaneAnchor>();
    plane->identifier = "P";
    plane->transform = {{{{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {10, 20, 30, 1}}}};
    plane->center = {1, 2, 3};
    plane->extent = {2, 0, 3};
    plane->geometry = std::make_shared<ArPlaneGeometry>(
        ArPlaneGeometry{{{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {5, 0, 1}}, {0, 1, 2, 0, 2, 3}});
    return plane;
}

std::shared_ptr<ArImageAnchor> makeTrigger(const std::string& name, const Vector4& position = {0, 0, 0, 1}) {
    auto anchor = std::make_shared<ArImageAnchor>();
    anchor->identifier = "id of " + name;
    anchor->transform = Matrix::identity();
    anchor->transform[3] = position;
    anchor->referenceImage =
        std::make_shared<ArReferenceImage>(ArReferenceImage{name, makeImage(200, 100), 0.5});
    return anchor;
}

} // namespace

struct TriggerTrackingTest : TriggerTest {
    Lines newestImages() { return namesOf(session().runs().back().configuration.images); }
};

TEST_F(TriggerTrackingTest, FlagsChooseTheConfiguration) {
    constexpr unsigned h = ArConfiguration::kHorizontal, v = ArConfiguration::kVertical;
    struct Case {
        double level;
        std::vector<const char*> flags;
        unsigned planes; ///< none: images are followed without a world
        bool focus;
    };
    const Case cases[] = {
        {12, {}, h, false},
        {12, {"verticalplanes", "horizontalplanes", "autofocus"}, h | v, true},
        {11, {"verticalplanes"}, h, true}, // focus is left as the system has it
        {12, {"triggerimage"}, 0, true},
        {12, {"triggerimage", "autofocus"}, 0, false},
        {12, {"triggerimage", "lockonloss"}, h, false},
    };
    load({"a"});
    for (const auto& [level, flags, planes, focus] : cases) {
        const std::string words = testing::PrintToString(flags);
        system->level = level;
        useFlags(flags);
        listener->take();
        processor->setup(480, 640);
        const auto configuration = session().runs().back().configuration;
        EXPECT_EQ(configuration.kind == ArConfiguration::Kind::imageOnly, planes == 0) << words;
        EXPECT_EQ(configuration.planeDetection, planes) << words;
        EXPECT_EQ(configuration.autoFocusEnabled, focus) << words;
        EXPECT_EQ(newestImages(), Lines{"a"});
        const bool reportsTriggers = !flags.empty() && flags[0] == std::string("triggerimage");
        EXPECT_EQ(listener->take()[1], reportsTriggers ? "trigger started" : "plane started") << words;
    }
}

TEST_F(ProcessorTest, NamesItsTrackerWithTheSnapFlagOnly) {
    run();
    processor->start();
    EXPECT_EQ(listener->take(), (Lines{"projection", "viewport 480.0 640.0"}));
    flag("snap");
    processor->start();
    EXPECT_EQ(listener->take(),
              (Lines{"lost markerless", "projection", "viewport 480.0 640.0", "found markerless"}));
    processor->stop();
    EXPECT_EQ(listener->take(), (Lines{"lost markerless", "plane clear"}));
}

TEST_F(ProcessorTest, ProjectsForHalfTheViewport) {
    run();
    std::vector<double> asked;
    session().send(frame(1, [&](FakeArCamera& camera) {
        camera.project = [&](int orientation, Size viewport, double zNear, double zFar) {
            asked = {double(orientation), viewport.width, viewport.height, zNear, zFar};
            return Matrix{{{{7, 0, 0, 0}, {}, {}, {}}}};
        };
        camera.display = [](int, Size) { return AffineTransform{2, 0, 0, 4, 1, 1}; };
    }));
    EXPECT_EQ(processor->getOrientationWithViewport({1, 1}), (AffineTransform{0.5, 0, 0, 0.25, -0.5, -0.25}));
    listener->take();
    processor->setViewport(751, 1335);
    EXPECT_EQ(asked, (std::vector<double>{1, 375, 667, 1, 200000}));
    EXPECT_EQ(listener->matrix[0].x, 7);
    EXPECT_EQ(listener->take(), (Lines{"projection", "viewport 751.0 1335.0"}));
    processor->setViewport(751, 1335);
    EXPECT_TRUE(listener->take().empty());
}

TEST_F(ProcessorTest, TurnsWithTheInterface) {
    run();
    struct Case {
        int code;
        Vector4 right;
        const char *log, *viewport;
    };
    const Case cases[] = {
        {3, {1, 0, 0, 0}, "Kestrin - Orientation=LANDSCAPE_RIGHT", "viewport 640.0 480.0"},
        {1, {0, 1, 0, 0}, "Kestrin - Orientation=PORTRAIT", "viewport 480.0 640.0"},
        {4, {-1, 0, 0, 0}, "Kestrin - Orientation=LANDSCAPE_LEFT", "viewport 640.0 480.0"},
        {2, {0, -1, 0, 0}, "Kestrin - Orientation=PORTRAIT_DOWN", "viewport 480.0 640.0"},
    };
    for (const auto& [code, right, log, viewport] : cases) {
        system->app.interfaceOrientation.set(code);
        session().send(frame(1));
        EXPECT_EQ(takeLog().front(), log);
        EXPECT_EQ(listener->take(), (Lines{"projection", viewport, "tracked markerless 1.0"}));
        EXPECT_EQ(listener->matrix[0], right) << code;
    }
}

TEST_F(ProcessorTest, MapsTheReasons) {
    run();
    struct Case {
        double level;
        TrackingReason reason;
        Lines told;
    };
    const Case cases[] = {{12, TrackingReason::initializing, {"reason 1"}},
                          {12, TrackingReason::initializing, {}}, // told already
                          {12, TrackingReason::insufficientFeatures, {"reason 4"}},
                          {12, TrackingReason::relocalizing, {"reason 2"}},
                          {12, TrackingReason::none, {"reason 0"}},
                          {11, TrackingReason::relocalizing, {}}};
    for (const auto& [level, reason, told] : cases) {
        system->level = level;
        session().send(frame(1, [&, why = reason](FakeArCamera& c) { c.reason = why; }));
        const Lines lines = listener->take();
        EXPECT_EQ(Lines(lines.begin() + 1, lines.end()), told);
    }
}

TEST_F(ProcessorTest, SendsTheLightEveryTwoSeconds) {
    processor->setup(480, 640);
    run(); // schedules nothing more
    advance(2);
    EXPECT_EQ(listener->take(), Lines{"light 1.000000"}) << "full before the first frame";
    const std::pair<std::optional<double>, const char*> cases[] = {
        {1000, "light 0.250000"},
        {5000, "light 1.000000"},
        {std::numeric_limits<double>::quiet_NaN(), "light 0.000000"},
        {std::nullopt, "light 0.000000"},
    };
    for (const auto& [intensity, line] : cases) {
        auto lit = frame(1);
        lit->ambientIntensity = intensity;
        session().send(lit);
        listener->take();
        advance(1.99);
        EXPECT_TRUE(listener->take().empty());
        advance(0.01);
        EXPECT_EQ(listener->take(), Lines{line});
    }
}

TEST_F(ProcessorTest, ReportsPlanesAboutTheirCentreOrWithAMesh) {
    run();
    const auto plane = makePlane();
    session().add({plane, makeTrigger("t")});
    EXPECT_EQ(listener->take(), Lines{"plane added P 2.0 3.0"});
    // Added along the world's axes although the plane is turned.
    EXPECT_EQ(listener->matrix[3], (Vector4{11, 22, 33, 1}));
    flag("planegeometry");
    session().update({plane});
    EXPECT_EQ(listener->take(), (Lines{"plane updated P 2.0 3.0", "plane geometry P 4 5.0 6 3"}));
    EXPECT_EQ(listener->matrix, plane->transform);
    session().remove({plane});
    EXPECT_EQ(listener->take(), Lines{"plane removed P"});
}

TEST_F(TriggerTrackingTest, ReportsTriggersBesidesPlanes) {
    run();
    const auto lost = makeTrigger("lost");
    lost->isTracked = false;
    session().add({makePlane(), makeTrigger("t"), lost});
    EXPECT_EQ(listener->take(),
              (Lines{"trigger added t 0.5 0.2", "trigger added lost 0.5 0.2", "plane added P 2.0 3.0"}));
    session().update({lost, makeTrigger("t"), makePlane()});
    EXPECT_EQ(listener->take(), (Lines{"trigger updated t 0.5 0.2", "plane updated P 2.0 3.0"}));
    EXPECT_EQ(session().removedAnchors(), Lines{"id of lost"});
    session().remove({makePlane(), lost});
    EXPECT_EQ(listener->take(), Lines{"trigger removed lost"}) << "planes are not taken back";
    processor->stop();
    EXPECT_EQ(listener->take(), (Lines{"lost markerless", "trigger clear"}));
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
    // Every later load runs the session again.
    for (const Lines& ids : {Lines{"b", "c"}, Lines{}}) {
        load(ids);
        EXPECT_EQ(newestImages(), (Lines{"b", "c"})) << "an empty load changes nothing";
    }
    EXPECT_EQ(session().runs().size(), 3U);
}

TEST_F(TriggerTrackingTest, SnapsTheNearestStrictlyInside) {
    run();
    const auto seen = frame(1, [](FakeArCamera& camera) { camera.pose[3] = {0, 0, 10, 1}; });
    seen->anchors = {makePlane(),
                     makeTrigger("edge", {0, 5, 10, 1}),
                     makeTrigger("other edge", {480, 5, 10, 1}),
                     makeTrigger("far", {100, 600, 10, 1}),
                     makeTrigger("near", {100, 1, -40, 1}),
                     makeTrigger("as near", {100, 1, 60, 1}),
                     makeTrigger("below", {1, 640, 10, 1})};
    session().send(seen);
    EXPECT_EQ(processor->snapMarker(), "near");
    seen->anchors.resize(3);
    EXPECT_EQ(processor->snapMarker(), std::nullopt);
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
