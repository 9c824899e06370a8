#include "camera/YUVCameraManager.h"
#include "camera/ListenerList.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;
using Lines = std::vector<std::string>;
using Floats = std::vector<float>;

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
        asked.push_back(viewport);
        return {0, -1, 1, 0, 0, 1};
    }
    void send(const PixelBufferRef& buffer, int width = 640, int height = 480) {
        list.forEach([&](auto& c) { c.cameraFrameReceivedWithBuffer(buffer, 0, width, height); });
    }

    ListenerList<CameraFrameConsumer> list;
    mutable std::vector<Size> asked;
};

PixelBufferRef makePicture(int planes = 2) { return std::make_shared<FakePixelBuffer>(640, 480, planes); }

} // namespace

struct YUVCameraManagerTest : PlatformTest {
    /// Milliseconds that the quickest of some draws takes.
    double quickest() {
        std::chrono::duration<double, std::milli> least(1000);
        for (int i = 0; i < 5; ++i) {
            const auto began = std::chrono::steady_clock::now();
            peer.draw();
            least = std::min<decltype(least)>(least, std::chrono::steady_clock::now() - began);
        }
        return least.count();
    }
    /// How often the draws since the last call did that.
    long count(const char* line) { return std::ranges::count(gpu.takeJournal(), line); }

    FakeGpuDevice& gpu = *system->graphics.device;
    std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>();
    std::shared_ptr<YUVCameraManager> manager = YUVCameraManager::initWithProvider(provider);
    FakeRenderPeer& peer = *system->graphics.newest;
    PixelBufferRef picture = makePicture();
};

TEST_F(YUVCameraManagerTest, DrawsAPictureAsOneTurnedQuad) {
    EXPECT_EQ(peer.settings.preferredFramesPerSecond, 45);
    EXPECT_EQ(gpu.buffer->values, (Floats{-1, -1, 0, 1, 1, -1, 1, 1, -1, 1, 0, 0, 1, 1, 1, 0}));
    provider->send(picture);
    provider->send(picture);
    provider->send(picture, 480, 640);
    EXPECT_EQ(provider->asked, (std::vector<Size>{{640, 480}, {480, 640}})) << "when a size changes";
    peer.draw();
    EXPECT_EQ(gpu.takeJournal(),
              (Lines{"makeCommandBuffer", "label MyCommand", "makeEncoder", "label MyRenderEncoder",
                     "push DrawCapturedImage", "cull none", "pipeline", "depth", "vertices 0", "texture 1",
                     "texture 2", "strip 0 4", "pop", "end", "present", "commit"}));
    EXPECT_EQ(gpu.drawn[1]->buffer, picture);
    EXPECT_EQ(gpu.drawn[2]->format, GpuFormat::rg8Unorm);
    EXPECT_EQ(gpu.buffer->values, (Floats{-1, -1, 1, 1, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 0, 0}));
}

TEST_F(YUVCameraManagerTest, PresentsWithoutDrawingWhatItDoesNotHave) {
    provider->send(makePicture(1));
    provider->send(nullptr);
    EXPECT_FALSE(manager->renderer()->isWaiting());
    gpu.texturesFail = true;
    provider->send(picture);
    peer.draw();
    EXPECT_EQ(count("strip 0 4"), 0);
}

TEST_F(YUVCameraManagerTest, SaysWhyItCannotDraw) {
    system->graphics.device = nullptr;
    const auto blind = YUVCameraManager::initWithProvider(nullptr);
    blind->cameraFrameReceivedWithBuffer(picture, 0, 640, 480);
    for (int i = 0; i < 5; ++i)
        system->graphics.newest->draw(); // never blocks
    EXPECT_EQ(takeLog(), (Lines{"Metal is not supported on this device",
                                "Error Loading Default Shaders = there is no device for them"}));
}

TEST_F(YUVCameraManagerTest, KeepsTheFirstOfTwoPicturesUntilTheGpuIsDone) {
    gpu.finishesAtOnce = false;
    const std::weak_ptr<const PixelBuffer> first = picture;
    provider->send(std::exchange(picture, nullptr));
    provider->send(makePicture());
    peer.draw();
    EXPECT_EQ(gpu.drawn[1]->buffer, first.lock());
    provider->send(makePicture());
    peer.draw();
    gpu.drawn.assign(4, nullptr);
    EXPECT_FALSE(first.expired());
    gpu.finish();
    EXPECT_TRUE(first.expired());
    manager.reset();
    provider->send(makePicture()); // skips the one that has gone
}

TEST_F(YUVCameraManagerTest, HasThreeFramesInFlight) {
    gpu.finishesAtOnce = false;
    const auto fourth = [&](const auto& release) {
        gpu.finish();
        for (int i = 0; i < 3; ++i)
            peer.draw();
        gpu.takeJournal();
        std::thread drawing([&] { peer.draw(); });
        release(); // without it the fourth would never return
        drawing.join();
        return count("commit");
    };
    EXPECT_EQ(fourth([&] { gpu.finish(); }), 1);
    EXPECT_EQ(fourth([&] { manager->stop(); }), 0);
}

TEST_F(YUVCameraManagerTest, PacesWhileLocked) {
    for (int i = 0; i < 5; ++i)
        manager->signal(); // kept while unlocked
    EXPECT_LT(quickest(), 12);
    manager->lockSignal();
    const double paced = quickest();
    EXPECT_GE(paced, 12);
    EXPECT_LT(paced, 30) << "a signal lets a draw through at once";
    EXPECT_GE(quickest(), 30) << "no signal is left";
    manager->unlockSignal();
    EXPECT_LT(quickest(), 12);
}

TEST_F(YUVCameraManagerTest, TakesScreenshotsOfTheViewsSize) {
    EXPECT_FALSE(manager->screenshot().isValid()) << "the view has no size";
    manager->getView()->setFrame({{5, 6}, {375, 667}});
    system->app.screen.nativeScale = 3;
    peer.picture = makeImage(64, 48, 255); // the display's pixels need not be the view's
    const Image shot = manager->screenshot();
    EXPECT_EQ(shot.size(), (Size{375, 667}));
    EXPECT_EQ(shot.pixels().size(), 1125U * 2001 * 4);
    // Every size that rounding could make 479 or 481 of.
    for (int width = 100; width < 2000; width += 7)
        EXPECT_EQ(YUVCameraManager::imageWithImage(makeImage(width, 9), 480).pixelWidth(), 480);
    EXPECT_EQ(manager->screenshotLowRes().size(), (Size{480, 854}));
}

} // namespace kestrin
