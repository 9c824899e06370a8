#include "ProcessorTest.h"

#include <algorithm>
#include <limits>

namespace kestrin::test {

using namespace platform;

namespace {

std::shared_ptr<ArPlaneAnchor> makePlane() {
    auto plane = std::make_shared<ArPlaneAnchor>();
    plane->identifier = "A";
    plane->transform = {{{{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {10, 20, 30, 1}}}};
    plane->center = {1, 2, 3};
    plane->extent = {2, 0, 3};
    auto mesh = std::make_shared<ArPlaneGeometry>();
    mesh->vertices = {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {5, 0, 1}};
    mesh->triangleIndices = {0, 1, 2, 0, 2, 3};
    plane->geometry = mesh;
    return plane;
}

} // namespace

TEST_F(ProcessorTest, ChoosesPlanesAndFocusByFlags) {
    constexpr unsigned h = ArConfiguration::kHorizontal, v = ArConfiguration::kVertical;
    struct Case {
        double level;
        std::vector<const char*> flags;
        unsigned planes;
        bool focus;
    };
    const Case cases[] = {
        {12, {}, h, false},
        {12, {"horizontalplanes", "autofocus"}, h, true},
        {12, {"verticalplanes"}, v, false},
        {12, {"verticalplanes", "horizontalplanes"}, h | v, false},
        {11, {"verticalplanes"}, h, true}, // focus is left as the system has it
    };
    for (const auto& [level, flags, planes, focus] : cases) {
        system->level = level;
        KestrinFeatureFlags::getInstance()->clear();
        for (const char* word : flags)
            flag(word);
        processor->setup(480, 640);
        EXPECT_EQ(session().runs().back().configuration.planeDetection, planes);
        EXPECT_EQ(session().runs().back().configuration.autoFocusEnabled, focus);
    }
}

TEST_F(ProcessorTest, RemembersAStartThatComesTooEarly) {
    processor->start();
    processor->pause(); // does not forget it
    takeLog();
    for (const int starts : {1, 0}) { // it is done once
        processor->setup(480, 640);
        EXPECT_EQ(std::ranges::count(takeLog(), "ARKitMarkerlessProcessor::start"), starts);
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
    EXPECT_EQ(listener->projection[0].x, 7);
    EXPECT_EQ(listener->take(), (Lines{"projection", "viewport 751.0 1335.0"}));
    processor->setViewport(751, 1335);
    EXPECT_TRUE(listener->take().empty());
}

TEST_F(ProcessorTest, TurnsWithTheInterface) {
    run();
    struct Case {
        int code;
        Vector4 right, up;
        const char *log, *viewport;
    };
    // From each of the others, so that every one is a change.
    const Case cases[] = {
        {3, {1, 0, 0, 0}, {0, 1, 0, 0}, "Kestrin - Orientation=LANDSCAPE_RIGHT", "viewport 640.0 480.0"},
        {1, {0, 1, 0, 0}, {-1, 0, 0, 0}, "Kestrin - Orientation=PORTRAIT", "viewport 480.0 640.0"},
        {4, {-1, 0, 0, 0}, {0, -1, 0, 0}, "Kestrin - Orientation=LANDSCAPE_LEFT", "viewport 640.0 480.0"},
        {2, {0, -1, 0, 0}, {1, 0, 0, 0}, "Kestrin - Orientation=PORTRAIT_DOWN", "viewport 480.0 640.0"},
    };
    for (const Case& expected : cases) {
        system->app.interfaceOrientation.set(expected.code);
        session().send(frame(1));
        EXPECT_EQ(takeLog().front(), expected.log);
        EXPECT_EQ(listener->take(), (Lines{"projection", expected.viewport, "tracked markerless 1.0"}));
        EXPECT_EQ(listener->pose[0], expected.right) << expected.code;
        EXPECT_EQ(listener->pose[1], expected.up) << expected.code;
    }
    system->app.interfaceOrientation.set(0);
    session().send(frame(2));
    EXPECT_EQ(listener->pose, Matrix::identity()) << "an unknown code turns the pose back";
    // The turn is multiplied from the right.
    system->app.interfaceOrientation.set(1);
    const Matrix camera = {{{{0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}, {4, 5, 6, 1}}}};
    session().send(frame(4, [&](FakeArCamera& c) { c.pose = camera; }));
    EXPECT_EQ(listener->pose, (Matrix{{{{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {4, 5, 6, 1}}}}));
}

TEST_F(ProcessorTest, MapsTheReasons) {
    run();
    const auto told = [&](TrackingReason reason) {
        session().send(frame(1, [&](FakeArCamera& c) { c.reason = reason; }));
        const auto lines = listener->take();
        return lines.size() == 2 ? lines[1] : "";
    };
    EXPECT_EQ(told(TrackingReason::initializing), "reason 1");
    EXPECT_EQ(told(TrackingReason::insufficientFeatures), "reason 4");
    EXPECT_EQ(told(TrackingReason::relocalizing), "reason 2");
    EXPECT_EQ(told(TrackingReason::none), "reason 0");
    system->level = 11.0;
    EXPECT_EQ(told(TrackingReason::relocalizing), "");
}

TEST_F(ProcessorTest, SendsTheLightEveryTwoSeconds) {
    processor->setup(480, 640);
    processor->setup(480, 640); // schedules nothing more
    processor->startCamera();
    listener->take();
    advance(2);
    EXPECT_EQ(listener->take(), Lines{"light 1.000000"}) << "full before the first frame";
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::pair<std::optional<double>, const char*> cases[] = {
        {1000, "light 0.250000"}, {5000, "light 1.000000"},      {-5, "light 0.000000"},
        {kNan, "light 0.000000"}, {kInfinity, "light 1.000000"}, {std::nullopt, "light 0.000000"},
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
    session().add({plane, std::make_shared<ArImageAnchor>()});
    EXPECT_EQ(listener->take(), Lines{"plane added A 2.0 3.0"});
    // Added along the world's axes although the plane is turned.
    EXPECT_EQ(listener->pose[3], (Vector4{11, 22, 33, 1}));
    flag("planegeometry");
    session().update({plane});
    EXPECT_EQ(listener->take(), (Lines{"plane updated A 2.0 3.0", "plane geometry A 4 5.0 6 3"}));
    EXPECT_EQ(listener->pose, plane->transform);
    system->level = 11.0; // no meshes there
    session().update({plane});
    EXPECT_EQ(listener->pose[3], (Vector4{11, 22, 33, 1}));
    session().remove({plane});
    EXPECT_EQ(listener->take(), (Lines{"plane updated A 2.0 3.0", "plane removed A"}));
}

} // namespace kestrin::test
