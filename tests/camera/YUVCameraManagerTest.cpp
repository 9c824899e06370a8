#include "camera/YUVCameraManager.h"
#include "FakeProvider.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <limits>

namespace kestrin {

using namespace platform;
using namespace test;

struct YUVCameraManagerTest : PlatformTest {
    std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>();
    std::shared_ptr<YUVCameraManager> manager = YUVCameraManager::initWithProvider(provider);
    FakeRenderPeer& peer = *system->graphics.newest;
    PixelBufferRef picture = std::make_shared<FakePixelBuffer>(640, 480);
};

TEST_F(YUVCameraManagerTest, MakesItsViewAndListens) {
    EXPECT_TRUE(peer.settings.framebufferOnly);
    EXPECT_EQ(peer.settings.preferredFramesPerSecond, 45);
    EXPECT_EQ(manager->getView()->frame(), Rect());
    EXPECT_EQ(provider->list.boxes()->size(), 1U);
    EXPECT_EQ(manager->bufferSize(), Size());
    EXPECT_EQ(manager->getScreenSize(), (Size{750, 1334}));
}

TEST_F(YUVCameraManagerTest, AsksForTheTransformWhenTheFrameSizeChanges) {
    provider->send(picture, 640, 480);
    provider->send(picture, 640, 480);
    EXPECT_EQ(provider->asked(), (std::vector<Size>{{640, 480}}));
    EXPECT_EQ(manager->bufferSize(), (Size{640, 480}));
    provider->send(picture, 480, 640);
    EXPECT_EQ(provider->asked().back(), (Size{480, 640}));
    peer.draw();
    EXPECT_EQ(system->graphics.device->drawn[1]->buffer, picture);
    EXPECT_EQ(system->graphics.device->buffer->values[2], 1); // the provider's transform is in place
}

TEST_F(YUVCameraManagerTest, FollowsTheViewsSizeInPoints) {
    manager->getView()->setFrame({{0, 0}, {375, 667}});
    peer.resizeDrawable({750, 1334});
    EXPECT_EQ(provider->asked(), (std::vector<Size>{{375, 667}}));
    provider->send(picture, 640, 480);
    EXPECT_EQ(provider->returned, (Size{375, 667}));
    EXPECT_EQ(manager->getViewport(), (Size{375, 667}));
}

TEST_F(YUVCameraManagerTest, LivesWithoutGpuAndProvider) {
    takeLog();
    system->graphics.device = nullptr;
    const auto blind = YUVCameraManager::initWithProvider(nullptr);
    EXPECT_EQ(takeLog(), std::vector<std::string>{"Metal is not supported on this device"});
    blind->cameraFrameReceivedWithBuffer(picture, 0, 640, 480);
    blind->lockSignal();
    system->graphics.newest->draw();
    system->graphics.newest->resizeDrawable({1, 1});
}

TEST_F(YUVCameraManagerTest, IsSkippedOnceItHasGone) {
    manager.reset();
    provider->send(picture, 640, 480);
    EXPECT_EQ(provider->list.boxes()->size(), 1U) << "removal drops nothing";
    EXPECT_TRUE(provider->asked().empty());
}

TEST_F(YUVCameraManagerTest, FitsContentOverAView) {
    const auto fit = [](Size content, Size view) { return YUVCameraManager::fit_scale(content, view); };
    EXPECT_EQ(fit({640, 480}, {375, 667}), (Size{889, 667}));
    EXPECT_EQ(fit({480, 640}, {375, 400}), (Size{375, 500}));
    EXPECT_EQ(fit({100, 100}, {300, 300}), (Size{300, 300}));
    EXPECT_EQ(fit({3, 27}, {100, 500}), (Size{100, 899})) << "900 in double precision";
    const Size odd = fit({std::numeric_limits<double>::quiet_NaN(), 1}, {10, 20});
    EXPECT_EQ(odd.height, 20);
}

} // namespace kestrin
