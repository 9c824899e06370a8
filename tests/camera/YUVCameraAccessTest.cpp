#include "camera/YUVCameraAccess.h"
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
    Size cameraFrameReceivedWithBuffer(const PixelBufferRef&, double time, int, int) override {
        told.push_back(time);
        if (whenTold)
            whenTold();
        return {};
    }
    std::vector<double> told;
    std::function<void()> whenTold;
};

} // namespace

struct YUVCameraAccessTest : PlatformTest {
    YUVCameraAccessTest() { system->devices.cameras = {std::make_shared<FakeCamera>("Front"), camera}; }
    ~YUVCameraAccessTest() override { access->deinitialise(); }

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
    camera->rates = {{10, 30}, {60, 60}};
    EXPECT_TRUE(access->initialise());
    EXPECT_FALSE(access->initialise());
    EXPECT_THAT(takeLog(), ElementsAre(kPrefix + "initialise::Back Device Name = Rear",
                                       kPrefix + "Supported Frame Rate: Min = 10.000000 Max = 30.000000",
                                       kPrefix + "Supported Frame Rate: Min = 60.000000 Max = 60.000000",
                                       kPrefix + "initialise::ContinuousAutoFocus Mode is not supported.",
                                       kPrefix + "Instance already initialised!"));
    EXPECT_TRUE(camera->output->alwaysDiscardsLateFrames);
    EXPECT_EQ(access->getCaptureWidth(), 640);
    EXPECT_EQ(access->getFPS(), 60);

    EXPECT_TRUE(access->start());
    access->deinitialise();
    EXPECT_FALSE(camera->output || camera->running) << "the camera is given back";
    camera->error = "is busy";
    EXPECT_FALSE(access->initialise());
    EXPECT_EQ(takeLog().back(), kPrefix + "initialise::Couldn't initialise device input. Error = is busy");
    system->devices.cameras.clear();
    EXPECT_FALSE(access->initialise());
    EXPECT_EQ(takeLog().back(), kPrefix + "initialise::Couldn't find suitable camera.");
}

TEST_F(YUVCameraAccessTest, TellsItsConsumersInOrder) {
    ASSERT_TRUE(access->initialise());
    access->start();
    access->addDelegate(first);
    access->addDelegate(first);
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
    access->removeDelegate(*first);
    take(3.5);
    EXPECT_EQ(first->told.size(), 3U) << "one alone stays";
    access->removeDelegates();
    take(4.5);
    EXPECT_EQ(first->told.size(), 3U);
}

TEST_F(YUVCameraAccessTest, NobodyIsCalledAfterTheListWasEmptied) {
    ASSERT_TRUE(access->initialise());
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

} // namespace kestrin
