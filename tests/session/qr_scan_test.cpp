#include "Scene.h"
#include "core/config/KestrinFeatureFlags.h"
#include "linux/vision/ZxingVision.h"
#include "services/KestrinQRScanner.h"
#include "session/SimulatedTracking.h"
#include "support/FakePlatform.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "tracking/RecordingListener.h"

#include <gmock/gmock.h>

namespace kestrin::session::test {

namespace {

using testing::UnorderedElementsAre;

/// The fake platform with real eyes in a room that is drawn.
struct SeeingPlatform : kestrin::test::FakePlatform {
    explicit SeeingPlatform(const SimulatedOptions& options) : room(options) {}
    platform::Vision& vision() override { return sight; }
    platform::WorldTracking& tracking() override { return room; }

    gtk::ZxingVision sight;
    SimulatedTracking room;
};

using QrScan = kestrin::test::PlatformTest;

TEST_F(QrScan, ReadsEveryCodeOfAFrameAndHoldsNoMoreThanThePool) {
    SimulatedOptions options;
    options.rate = 1;
    options.session.pacing = Pacing::stepped;
    options.session.buffers = 3;
    options.width = 646; // rows longer than what is seen of them
    options.room = makeRoom(R"({
      "surfaces": [{"name": "wall", "center": [0, 1, -2], "size": [4, 2.6], "facing": [0, 0, 1], "texture": "plaster"}],
      "codes": [
        {"name": "a", "text": "upright", "center": [-0.5, 1, -2], "facing": [0, 0, 1], "width": 0.5},
        {"name": "b", "text": "turned \u00e9", "center": [0.5, 1, -2], "facing": [0, 0, 1], "up": [1, 0.6, 0], "width": 0.5}],
      "camera": {"period": 1, "path": [{"time": 0, "position": [0, 1, 0], "lookAt": [0, 1, -1]}]}})");
    const auto seeing = std::make_shared<SeeingPlatform>(options);
    platform::installPlatform(system = seeing);
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    const auto processor = ARKitMarkerlessProcessor::initWithDelegate(
        std::make_shared<kestrin::test::RecordingListener>(), nullptr);
    processor->setup(options.width, options.height);
    processor->start();
    processor->startCamera();
    std::vector<std::string> texts;
    KestrinQRScanner::getInstance()->scan([&](const std::string& text) { texts.push_back(text); });

    ASSERT_TRUE(seeing->room.step()) << "the first takes its time on a busy machine";
    int frames = 1;
    while (seeing->room.step(1))
        ++frames;
    EXPECT_LE(frames, 3);
    EXPECT_EQ(system->queues.waitingWorkerTasks(), std::size_t(frames)) << "every frame is looked at";
    system->queues.runWorkers();
    runMain();
    EXPECT_THAT(texts, UnorderedElementsAre("upright", "turned \u00e9"));
    EXPECT_TRUE(seeing->room.step()) << "pictures are given back";
    processor->detach();
}

} // namespace

} // namespace kestrin::session::test
