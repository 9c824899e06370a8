#include "tracking/ARKitMarkerlessProcessor.h"
#include "RecordingListener.h"
#include "core/config/KestrinFeatureFlags.h"
#include "services/util/Singleton.h"
#include "support/FakePlatform.h"

#include <limits>

namespace kestrin {

using namespace platform;
using namespace test;

namespace {

struct RecordingConsumer : CameraFrameConsumer {
    Size cameraFrameReceivedWithBuffer(const PixelBufferRef&, double time, int width, int height) override {
        frames.push_back({double(width), double(height)});
        lastTime = time;
        if (whenCalled)
            whenCalled();
        return {};
    }
    std::vector<Size> frames;
    double lastTime = -1;
    std::function<void()> whenCalled;
};

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

struct ARKitMarkerlessProcessorTest : PlatformTest {
    ARKitMarkerlessProcessorTest() {
        resetSingletons();
        system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]";
    }
    ~ARKitMarkerlessProcessorTest() override { processor->detach(); }

    void flag(const char* word) { KestrinFeatureFlags::getInstance()->put(word); }
    FakeArSession& session() { return *system->worldTracking.newest(); }
    /// Set up, started, and the camera running; nothing recorded.
    void run() {
        processor->setup(480, 640);
        processor->start();
        processor->startCamera();
        listener->take();
        takeLog();
    }
    std::shared_ptr<ArFrame> frame(double time, std::function<void(FakeArCamera&)> shape = nullptr) {
        auto made = makeFrame(time);
        auto camera = std::make_shared<FakeArCamera>();
        if (shape)
            shape(*camera);
        made->camera = camera;
        return made;
    }

    std::shared_ptr<RecordingListener> listener = std::make_shared<RecordingListener>();
    std::shared_ptr<ARKitMarkerlessProcessor> processor =
        ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
};

using Processor = ARKitMarkerlessProcessorTest;

TEST_F(Processor, SetsUpInOrder) {
    processor->setup(480, 640);
    EXPECT_EQ(listener->take(),
              (Lines{"plane clear", "plane started", "projection", "viewport 480.0 640.0"}));
    EXPECT_EQ(takeLog(),
              (Lines{"ARKitMarkerlessProcessor - Setup ARKit Started.",
                     "Kestrin - Renderer - updating viewport w=480 h=640",
                     "Kestrin - Renderer - updating projection w=480 h=640", "Kestrin - Orientation=PORTRAIT",
                     "ARKitMarkerlessProcessor - Setup ARKit Finished."}));
    ASSERT_EQ(session().runs().size(), 1U);
    EXPECT_EQ(session().runs()[0].options, unsigned(kResetTracking | kRemoveExistingAnchors));
    EXPECT_TRUE(session().runs()[0].configuration.lightEstimationEnabled);
}

TEST_F(Processor, ChoosesPlanesAndFocusByFlags) {
    constexpr unsigned h = ArConfiguration::kHorizontal, v = ArConfiguration::kVertical;
    const auto configured = [&](std::initializer_list<const char*> flags) {
        KestrinFeatureFlags::getInstance()->clear();
        for (const char* word : flags)
            flag(word);
        processor->setup(480, 640);
        return session().runs().back().configuration;
    };
    EXPECT_EQ(configured({}).planeDetection, h);
    EXPECT_FALSE(configured({}).autoFocusEnabled);
    EXPECT_EQ(configured({"horizontalplanes"}).planeDetection, h);
    EXPECT_EQ(configured({"verticalplanes"}).planeDetection, v);
    EXPECT_EQ(configured({"verticalplanes", "horizontalplanes"}).planeDetection, h | v);
    EXPECT_TRUE(configured({"autofocus"}).autoFocusEnabled);
    system->level = 11.0;
    EXPECT_EQ(configured({"verticalplanes"}).planeDetection, h);
    EXPECT_TRUE(configured({}).autoFocusEnabled) << "left as the system has it";
}

TEST_F(Processor, RefusesWithoutWorldTracking) {
    system->worldTracking.supported = false;
    processor->setup(480, 640);
    EXPECT_EQ(takeLog(), Lines{"ARKitMarkerlessProcessor - Setup ARKit Started."});
    system->level = 10.3;
    processor->setup(480, 640);
    EXPECT_EQ(takeLog().back(),
              "Kestrin::ARKitMarkerlessProcessor::setup::ARKit is not available. You must use IOS 11+");
    EXPECT_TRUE(session().runs().empty());
    EXPECT_FALSE(ARKitMarkerlessProcessor::isSupported());
    const auto old = ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
    old->pause();
    EXPECT_EQ(old->getOrientationWithViewport({1, 1}), AffineTransform());
}

TEST_F(Processor, RemembersAStartThatComesTooEarly) {
    processor->start();
    processor->pause(); // does not forget it
    EXPECT_TRUE(listener->take().empty());
    takeLog();
    processor->setup(480, 640);
    const auto lines = takeLog();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines.back(), "ARKitMarkerlessProcessor - Setup ARKit Finished.");
    EXPECT_EQ(std::ranges::count(lines, "ARKitMarkerlessProcessor::start"), 1);
    listener->take();
    processor->stop();
    EXPECT_EQ(listener->take(), (Lines{"lost markerless", "plane clear"}));
    processor->setup(480, 640); // it was done once
    EXPECT_EQ(std::ranges::count(takeLog(), "ARKitMarkerlessProcessor::start"), 0);
}

TEST_F(Processor, NamesItsTrackerWithTheSnapFlagOnly) {
    run();
    processor->start();
    EXPECT_EQ(listener->take(), (Lines{"projection", "viewport 480.0 640.0"}));
    flag("snap");
    processor->start();
    EXPECT_EQ(listener->take(),
              (Lines{"lost markerless", "projection", "viewport 480.0 640.0", "found markerless"}));
    processor->stop();
    EXPECT_EQ(listener->take(), (Lines{"lost markerless", "plane clear"}));
    processor->stop();
    EXPECT_TRUE(listener->take().empty());
}

TEST_F(Processor, PausesAndResets) {
    run();
    processor->pause();
    EXPECT_EQ(takeLog(), (Lines{"ARKitMarkerlessProcessor::pause", "ARKitMarkerlessProcessor::stop"}));
    EXPECT_FALSE(session().isRunning());
    processor->reset();
    EXPECT_TRUE(session().isRunning());
    EXPECT_EQ(takeLog(),
              (Lines{"ARKitMarkerlessProcessor::reset", "ARKitMarkerlessProcessor - Setup ARKit Started.",
                     "ARKitMarkerlessProcessor - Setup ARKit Finished.", "ARKitMarkerlessProcessor::start",
                     "Kestrin - Renderer - updating projection w=480 h=640"}));
    processor->startPlacement();
    EXPECT_EQ(takeLog(), Lines{"ARKit Placement mode is not supported. This is an operation which runs in "
                               "the WebGL layer."});
}

TEST_F(Processor, ForgetsAnchorsOnlyOnceSetUp) {
    processor->resetContext();
    EXPECT_TRUE(session().runs().empty());
    flag("autofocus");
    processor->setup(480, 640);
    processor->resetContext();
    ASSERT_EQ(session().runs().size(), 2U);
    EXPECT_EQ(session().runs()[1].options, unsigned(kRemoveExistingAnchors));
    EXPECT_TRUE(session().runs()[1].configuration.autoFocusEnabled);
}

TEST_F(Processor, ProjectsForHalfTheViewport) {
    run();
    std::vector<double> asked;
    session().send(frame(1, [&](FakeArCamera& camera) {
        camera.project = [&](int orientation, Size viewport, double zNear, double zFar) {
            asked = {double(orientation), viewport.width, viewport.height, zNear, zFar};
            return Matrix{{{{7, 0, 0, 0}, {}, {}, {}}}};
        };
    }));
    listener->take();
    takeLog();
    processor->setViewport(751, 1335);
    EXPECT_EQ(asked, (std::vector<double>{1, 375, 667, 1, 200000}));
    EXPECT_EQ(listener->projection[0].x, 7);
    EXPECT_EQ(listener->take(), (Lines{"projection", "viewport 751.0 1335.0"}));
    EXPECT_EQ(takeLog(), (Lines{"Kestrin - Renderer - updating viewport w=751 h=1335",
                                "Kestrin - Renderer - updating projection w=751 h=1335"}));
    processor->setViewport(751, 1335);
    EXPECT_TRUE(listener->take().empty());
    EXPECT_TRUE(takeLog().empty());
    processor->updateProjectionMatrix();
    EXPECT_EQ(listener->take().size(), 2U);
    EXPECT_TRUE(takeLog().empty()) << "sent again, not computed again";
}

TEST_F(Processor, HasZeroMatricesWithoutACamera) {
    processor->setup(480, 640); // the session has a frame as soon as it runs
    EXPECT_EQ(listener->projection, Matrix::identity());
    EXPECT_EQ(processor->getOrientationWithViewport({1, 1}), (AffineTransform{1, 0, 0, 1, 0, 0}));

    auto blind = makeFrame(2);
    blind->camera = nullptr;
    processor->startCamera();
    session().send(blind);
    EXPECT_EQ(listener->pose, Matrix());
    processor->start();
    EXPECT_EQ(listener->projection, Matrix());
    EXPECT_EQ(processor->getOrientationWithViewport({1, 1}), AffineTransform());

    session().send(frame(3, [](FakeArCamera& camera) {
        camera.display = [](int, Size) { return AffineTransform{2, 0, 0, 4, 1, 1}; };
    }));
    EXPECT_EQ(processor->getOrientationWithViewport({1, 1}), (AffineTransform{0.5, 0, 0, 0.25, -0.5, -0.25}));
}

TEST_F(Processor, SettlesWhenAListenerSetsTheViewportAgain) {
    run();
    int told = 0;
    listener->whenViewportChanges = [&](const Size& size) {
        ++told;
        processor->setViewport(int(size.width), int(size.height));
    };
    processor->setViewport(800, 600);
    EXPECT_EQ(told, 1);
    listener->whenViewportChanges = [&](const Size&) { processor->setViewport(300, 400); };
    processor->setViewport(100, 100);
    EXPECT_EQ(listener->take().back(), "viewport 300.0 400.0");
}

TEST_F(Processor, TurnsWithTheInterface) {
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
        EXPECT_EQ(listener->pose[2], (Vector4{0, 0, 1, 0}));
    }
    // An unknown code turns the pose back and is not remembered.
    system->app.interfaceOrientation.set(0);
    session().send(frame(2));
    EXPECT_EQ(listener->pose, Matrix::identity());
    system->app.interfaceOrientation.set(2);
    session().send(frame(3));
    EXPECT_EQ(listener->pose, Matrix::identity());
    EXPECT_TRUE(takeLog().empty());
}

TEST_F(Processor, MultipliesThePoseFromTheRight) {
    run();
    Matrix camera = {{{{0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}, {4, 5, 6, 1}}}};
    session().send(frame(2.5, [&](FakeArCamera& c) { c.pose = camera; }));
    EXPECT_TRUE(listener->mvpIsView);
    EXPECT_EQ(listener->pose, (Matrix{{{{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {4, 5, 6, 1}}}}));
    EXPECT_EQ(listener->take(), Lines{"tracked markerless 2.5"});
}

TEST_F(Processor, WorksThroughAFrameInOrder) {
    run();
    const auto consumer = std::make_shared<RecordingConsumer>();
    processor->addDelegate(consumer);
    processor->addDelegate(consumer);
    EXPECT_EQ(takeLog(), Lines{"Kestrin::ARKitMarkerlessProcessor::addDelegate::Delegate Instance already "
                               "exists in List. Will not be added."});
    Lines before;
    consumer->whenCalled = [&] { before = listener->take(); };
    const auto moving = frame(1, [](FakeArCamera& c) { c.reason = TrackingReason::excessiveMotion; });
    session().send(moving);
    EXPECT_EQ(before, Lines{"tracked markerless 1.0"});
    EXPECT_EQ(listener->take(), Lines{"reason 3"});
    EXPECT_EQ(consumer->frames, (std::vector<Size>{{480, 640}}));
    EXPECT_EQ(consumer->lastTime, 0);

    processor->removeDelegate(*consumer);
    session().send(moving); // still there, and the reason has not changed
    EXPECT_EQ(consumer->frames.size(), 2U);
    EXPECT_TRUE(listener->take().empty());
    processor->removeDelegates();
    processor->stopCamera();
    session().send(frame(2));
    EXPECT_EQ(consumer->frames.size(), 2U);
    EXPECT_TRUE(listener->take().empty()) << "the camera is off";
}

TEST_F(Processor, MapsTheReasons) {
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
    EXPECT_EQ(told(TrackingReason::none), "reason 0");
    system->level = 12.0;
    EXPECT_EQ(told(TrackingReason::initializing), "reason 1");
    processor->reset(); // begins at "none" again
    listener->take();
    EXPECT_EQ(told(TrackingReason::initializing), "reason 1");
}

TEST_F(Processor, SendsTheLightEveryTwoSeconds) {
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
    processor->pause();
    listener->take();
    advance(4);
    EXPECT_EQ(listener->take().size(), 2U) << "also while paused";
    processor->detach();
    processor = ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
    advance(4);
    EXPECT_TRUE(listener->take().empty()) << "the timer went with its owner";
}

TEST_F(Processor, ReportsPlanesAboutTheirCentre) {
    run();
    const auto plane = makePlane();
    session().add({plane, std::make_shared<ArImageAnchor>()});
    EXPECT_EQ(listener->take(), Lines{"plane added A 2.0 3.0"});
    // Added along the world's axes although the plane is turned.
    EXPECT_EQ(listener->pose[3], (Vector4{11, 22, 33, 1}));
    EXPECT_EQ(listener->pose[0], plane->transform[0]);
    session().update({plane});
    EXPECT_EQ(listener->take(), Lines{"plane updated A 2.0 3.0"});
    session().remove({plane});
    EXPECT_EQ(listener->take(), Lines{"plane removed A"});
}

TEST_F(Processor, ReportsMeshesInsteadOfCentres) {
    run();
    flag("planegeometry");
    const auto plane = makePlane();
    session().add({plane});
    EXPECT_EQ(listener->take(), (Lines{"plane added A 2.0 3.0", "plane geometry A 4 5.0 6 3"}));
    EXPECT_EQ(listener->pose, plane->transform);
    session().update({plane});
    EXPECT_EQ(listener->take(), (Lines{"plane updated A 2.0 3.0", "plane geometry A 4 5.0 6 3"}));
    plane->geometry = nullptr;
    session().update({plane});
    EXPECT_EQ(listener->take(), Lines{"plane updated A 2.0 3.0"});
    system->level = 11.0; // no meshes there
    session().update({plane});
    EXPECT_EQ(listener->pose[3], (Vector4{11, 22, 33, 1}));
}

TEST_F(Processor, SaysNothingOnceDetached) {
    run();
    processor->detach();
    EXPECT_EQ(listener.use_count(), 1);
    session().send(frame(1));
    session().add({makePlane()});
    session().remove({makePlane()});
    processor->setViewport(1, 2);
    processor->start();
    processor->pause();
    advance(2);
    EXPECT_TRUE(listener->take().empty());
}

TEST_F(Processor, EndsItsSessionOnMain) {
    run();
    const std::weak_ptr<ArSession> watched = processor->session;
    auto replacement = ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
    offMain([&] { processor.reset(); });
    EXPECT_FALSE(watched.expired());
    runMain();
    EXPECT_TRUE(watched.expired());
    processor = replacement;
}

} // namespace kestrin
