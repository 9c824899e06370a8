#include "FakeProvider.h"
#include "camera/YUVCameraManager.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <atomic>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

/// A picture that knows how many of its kind live.
struct CountedPicture : FakePixelBuffer {
    explicit CountedPicture(std::atomic<int>& c) : FakePixelBuffer(64, 48), count(c) { ++count; }
    ~CountedPicture() override { --count; }
    std::atomic<int>& count;
};

struct CameraHandOffTest : PlatformTest {};

// Frames, draws, resizes, pacing and signals all at once; the sanitizers watch.
TEST_F(CameraHandOffTest, PassesPicturesBetweenThreads) {
    constexpr int kDraws = 3000;
    std::atomic<int> alive = 0;
    std::atomic<bool> done = false;
    const auto provider = std::make_shared<FakeProvider>();
    auto manager = YUVCameraManager::initWithProvider(provider);
    FakeRenderPeer& peer = *system->graphics.newest;

    std::thread session([&] {
        for (int i = 0; !done; ++i) {
            provider->send(std::make_shared<CountedPicture>(alive), 640 + i / 100 % 2, 480);
            EXPECT_LE(alive, 4) << "one waits, one is drawn, one was drawn before, one is being dropped";
        }
    });
    std::thread drawing([&] {
        for (int i = 0; i < kDraws; ++i)
            peer.draw();
        done = true;
    });
    while (!done) {
        manager->getView()->setFrame({{0, 0}, {double(alive), 667}});
        peer.resizeDrawable({});
        manager->signal();
        std::this_thread::yield();
    }
    session.join();
    drawing.join();
    peer.draw();
    EXPECT_FALSE(manager->renderer()->isWaiting());
    system->graphics.device->drawn.assign(4, nullptr);
    manager.reset();
    EXPECT_EQ(alive, 0);
}

} // namespace kestrin
