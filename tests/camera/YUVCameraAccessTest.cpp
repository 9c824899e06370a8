#include "camera/YUVCameraAccess.h"
#include "camera/Timer.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

#include <atomic>
#include <functional>

namespace kestrin {

using namespace platform;
using namespace test;
using testing::ElementsAre;

namespace {

const std::string kPrefix = "Kestrin::YUVCameraAccess::";

struct Consumer : CameraFrameConsumer {
    Size cameraFrameReceivedWithBuffer(const PixelBufferRef&, double time, int width, int height) override {
        told.push_back(time);
        size = {double(width), double(height)};
        if (whenTold)
            whenTold();
        return {};
    }
    std::vector<double> told;
    Size size;
    std::function<void()> whenTold;
};

} // namespace

struct YUVCameraAccessTest : PlatformTest {
    YUVCameraAccessTest() { system->devices.cameras = {std::make_shared<FakeCamera>("Front"), camera}; }
    ~YUVCameraAccessTest() override { access->deinitialise(); }

    bool open() {
        const bool opened = access->initialise();
        takeLog();
        return opened;
    }
    void take(double time) {
        camera->take(std::make_shared<FakePixelBuffer>(1280, 960), time);
        system->queues.runWorkers();
    }

    const std::shared_ptr<FakeCamera> camera = std::make_shared<FakeCamera>("Rear");
    const std::shared_ptr<YUVCameraAccess> access = YUVCameraAccess::getInstance();
    const std::shared_ptr<Consumer> first = std::make_shared<Consumer>(),
                                    second = std::make_shared<Consumer>();
};

TEST_F(YUVCameraAccessTest, OpensTheLastCameraFound) {
    EXPECT_EQ(access->getCaptureWidth(), 0);
    camera->rates = {{10, 30}, {60, 60}};
    EXPECT_TRUE(access->initialise());
    EXPECT_FALSE(access->initialise());
    EXPECT_THAT(takeLog(), ElementsAre(kPrefix + "initialise::Back Device Name = Rear",
                                       kPrefix + "Supported Frame Rate: Min = 10.000000 Max = 30.000000",
                                       kPrefix + "Supported Frame Rate: Min = 60.000000 Max = 60.000000",
                                       kPrefix + "initialise::ContinuousAutoFocus Mode is not supported.",
                                       kPrefix + "Instance already initialised!"));
    EXPECT_TRUE(camera->output->alwaysDiscardsLateFrames);
    EXPECT_EQ(camera->longestFrame, 0);
    EXPECT_EQ(access->getCaptureWidth(), 640);
    EXPECT_EQ(access->getCaptureHeight(), 480);
    EXPECT_EQ(access->getFPS(), 60);

    access->deinitialise();
    EXPECT_FALSE(camera->output) << "the camera is given back";
    camera->focuses = true;
    camera->error = "is busy";
    EXPECT_FALSE(access->initialise());
    EXPECT_DOUBLE_EQ(camera->longestFrame, 0.1) << "set before it is opened";
    system->devices.cameras.clear();
    EXPECT_FALSE(access->initialise());
    EXPECT_THAT(takeLog(),
                ElementsAre(kPrefix + "initialise::Back Device Name = Rear",
                            kPrefix + "Supported Frame Rate: Min = 10.000000 Max = 30.000000",
                            kPrefix + "Supported Frame Rate: Min = 60.000000 Max = 60.000000",
                            kPrefix + "initialise::Couldn't initialise device input. Error = is busy",
                            kPrefix + "initialise::Couldn't find suitable camera."));
    EXPECT_FALSE(access->isInitialised());
}

TEST_F(YUVCameraAccessTest, SaysWhatCannotBeStartedOrStopped) {
    access->stop();
    EXPECT_FALSE(access->start());
    EXPECT_THAT(takeLog(), ElementsAre(kPrefix + "stop::Instance has already stopped!",
                                       kPrefix + "start::Instance has not been initialized yet."));
    ASSERT_TRUE(open());
    EXPECT_TRUE(access->start());
    EXPECT_TRUE(camera->running);
    access->deinitialise();
    EXPECT_FALSE(camera->running);
    EXPECT_FALSE(access->start()) << "it still counts as running";
    access->stop();
    EXPECT_THAT(takeLog(), ElementsAre(kPrefix + "start::Instance is already running!",
                                       kPrefix + "stop::Instance has not been initialized yet."));
    ASSERT_TRUE(open());
    access->stop();
    EXPECT_FALSE(access->isRunning());
    EXPECT_TRUE(access->start());
}

TEST_F(YUVCameraAccessTest, TellsItsConsumersInOrder) {
    access->addDelegate(first);
    access->removeDelegate(*first);
    EXPECT_THAT(takeLog(), ElementsAre(kPrefix + "addDelegate::Instance has not been initialized yet.",
                                       kPrefix + "removeDelegate::Instance has not been initialized yet."));
    ASSERT_TRUE(open());
    access->start();
    access->addDelegate(first);
    access->addDelegate(first);
    EXPECT_THAT(takeLog(),
                ElementsAre(kPrefix + "addDelegate::Delegate Instance already exists in List. Will "
                                      "not be added."));
    first->whenTold = [&] {
        EXPECT_FALSE(system->queues.isMain());
        EXPECT_EQ(second->told.size(), first->told.size() - 1) << "in order, each once";
        access->addDelegate(second); // from inside a call; told from the next picture on
    };
    take(1.5);
    EXPECT_TRUE(second->told.empty());
    second->told = {0};
    take(2.5);
    EXPECT_THAT(first->told, ElementsAre(1.5, 2.5));
    EXPECT_EQ(first->size, (Size{1280, 960}));
    EXPECT_EQ(access->getCaptureHeight(), 960);

    access->removeDelegate(*first);
    take(3.5);
    EXPECT_EQ(first->told.size(), 3U) << "one alone stays";
    access->removeDelegates();
    take(4.5);
    EXPECT_EQ(first->told.size(), 3U);
    EXPECT_EQ(access->getOrientationWithViewport({1, 2}), (AffineTransform{0, -1, 1, 0, 0, 1}));
}

TEST_F(YUVCameraAccessTest, NobodyIsCalledAfterTheListWasEmptied) {
    ASSERT_TRUE(open());
    access->start();
    system->queues.startWorkerThreads(1);
    auto calls = std::make_shared<std::atomic<int>>(0);
    for (int round = 0; round < 50; ++round) {
        auto guest = std::make_shared<Consumer>();
        guest->whenTold = [calls] { ++*calls; };
        access->addDelegate(guest);
        for (int i = 0; i < 4; ++i)
            camera->take(std::make_shared<FakePixelBuffer>(4, 4), i);
        access->removeDelegates();
        const int before = *calls;
        guest.reset();
        system->queues.waitForWorkers();
        EXPECT_EQ(*calls, before);
    }
}

TEST_F(YUVCameraAccessTest, TimersMeasureFromTheirLastStart) {
    EXPECT_EQ(Timer::stop("draw"), 0);
    Timer::start("draw");
    advance(0.25);
    EXPECT_DOUBLE_EQ(Timer::stop("draw"), 250);
    advance(0.25);
    EXPECT_DOUBLE_EQ(Timer::stop("draw"), 500);
    Timer::start("draw");
    advance(0.1);
    EXPECT_NEAR(Timer::stop("draw"), 100, 1e-9);
}

} // namespace kestrin
