#include "camera/YUVCameraManager.h"
#include "camera/CameraFrameProvider.h"
#include "camera/ListenerList.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <atomic>
#include <limits>
#include <mutex>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

namespace {

/// Sends frames when asked, and remembers for which viewports it was asked.
struct FakeProvider : CameraFrameProvider {
    void initialiseCamera() override {}
    void startCamera() override {}
    void stopCamera() override {}
    void addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) override { list.add(consumer); }
    void removeDelegate(const CameraFrameConsumer& consumer) override { list.remove(consumer); }
    void removeDelegates() override { list.clear(); }
    AffineTransform getOrientationWithViewport(const Size& viewport) const override {
        const std::lock_guard lock(mutex);
        asked.push_back(viewport);
        return {0, -1, 1, 0, 0, 1};
    }
    void send(const PixelBufferRef& buffer, int width, int height) {
        list.forEach([&](auto& c) { c.cameraFrameReceivedWithBuffer(buffer, 0, width, height); });
    }

    ListenerList<CameraFrameConsumer> list;
    mutable std::mutex mutex;
    mutable std::vector<Size> asked;
};

} // namespace

struct YUVCameraManagerTest : PlatformTest {
    std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>();
    std::shared_ptr<YUVCameraManager> manager = YUVCameraManager::initWithProvider(provider);
    FakeRenderPeer& peer = *system->graphics.newest;
    PixelBufferRef picture = std::make_shared<FakePixelBuffer>(640, 480);
};

TEST_F(YUVCameraManagerTest, AsksForTheTransformWhenASizeChanges) {
    EXPECT_EQ(peer.settings.preferredFramesPerSecond, 45);
    provider->send(picture, 640, 480);
    provider->send(picture, 640, 480);
    provider->send(picture, 480, 640);
    EXPECT_EQ(provider->asked, (std::vector<Size>{{640, 480}, {480, 640}}));
    peer.draw();
    EXPECT_EQ(system->graphics.device->drawn[1]->buffer, picture);
    // The texture's coordinates, turned by the provider's transform.
    EXPECT_EQ(system->graphics.device->buffer->values,
              (std::vector<float>{-1, -1, 1, 1, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 0, 0}));
    manager->getView()->setFrame({{0, 0}, {375, 667}});
    peer.resizeDrawable({750, 1334});
    EXPECT_EQ(provider->asked.back(), (Size{375, 667})) << "in points";
}

TEST_F(YUVCameraManagerTest, LivesWithoutGpuAndProvider) {
    takeLog();
    system->graphics.device = nullptr;
    const auto blind = YUVCameraManager::initWithProvider(nullptr);
    EXPECT_EQ(takeLog(), std::vector<std::string>{"Metal is not supported on this device"});
    blind->cameraFrameReceivedWithBuffer(picture, 0, 640, 480);
    system->graphics.newest->draw();
}

TEST_F(YUVCameraManagerTest, FitsContentOverAView) {
    const auto fit = [](Size content, Size view) { return YUVCameraManager::fit_scale(content, view); };
    EXPECT_EQ(fit({640, 480}, {375, 667}), (Size{889, 667}));
    EXPECT_EQ(fit({3, 27}, {100, 500}), (Size{100, 899})) << "900 in double precision";
    EXPECT_EQ(fit({std::numeric_limits<double>::quiet_NaN(), 1}, {10, 20}).height, 20);
}

TEST_F(YUVCameraManagerTest, TakesScreenshotsOfTheViewsSize) {
    EXPECT_FALSE(manager->screenshot().isValid()) << "the view has no size";
    manager->getView()->setFrame({{5, 6}, {375, 667}});
    system->app.screen.nativeScale = 3;
    EXPECT_EQ(manager->screenshot().pixels()[3], 0) << "transparent before the first picture";
    peer.picture = makeImage(64, 48, 255); // the display's pixels need not be the view's
    const Image shot = manager->screenshot();
    EXPECT_EQ(shot.size(), (Size{375, 667}));
    EXPECT_EQ(shot.pixels().size(), 1125U * 2001 * 4);
    EXPECT_EQ(shot.pixels().back(), 255);
    // Every size that rounding could make 479 or 481 of.
    for (int width = 100; width < 2000; width += 7)
        EXPECT_EQ(YUVCameraManager::imageWithImage(makeImage(width, 9), 480).pixelWidth(), 480);
    EXPECT_EQ(manager->screenshotLowRes().size(), (Size{480, 854}));
}

// Frames, draws, resizes and signals all at once; the sanitizers watch.
TEST_F(YUVCameraManagerTest, PassesPicturesBetweenThreads) {
    std::atomic<bool> done = false;
    std::thread session([&] {
        for (int i = 0; !done; ++i)
            provider->send(picture, 640 + i / 100 % 2, 480);
    });
    std::thread drawing([&] {
        for (int i = 0; i < 3000; ++i)
            peer.draw();
        done = true;
    });
    while (!done) {
        EXPECT_LE(picture.use_count(), 20) << "pictures do not pile up";
        manager->getView()->setFrame({{0, 0}, {double(picture.use_count()), 667}});
        peer.resizeDrawable({});
        manager->signal();
        std::this_thread::yield();
    }
    session.join();
    drawing.join();
    system->graphics.device->drawn.assign(4, nullptr);
    manager.reset();
    EXPECT_EQ(picture.use_count(), 1);
    provider->send(picture, 640, 480); // skips the one that has gone
}

} // namespace kestrin
