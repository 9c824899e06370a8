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

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// The fake platform with real eyes in a room that is drawn.
struct SeeingPlatform : kestrin::test::FakePlatform {
    explicit SeeingPlatform(const SimulatedOptions& options) : room(options) {}
    platform::Vision& vision() override { return sight; }
    platform::WorldTracking& tracking() override { return room; }

    gtk::ZxingVision sight;
    SimulatedTracking room;
};

/// A scan from the session's frames to its listener.
struct Scan {
    explicit Scan(SimulatedOptions options) {
        options.rate = 1;
        options.session.pacing = Pacing::stepped;
        options.session.buffers = 3;
        system = std::make_shared<SeeingPlatform>(options);
        platform::installPlatform(system);
        KestrinFeatureFlags::getInstance()->put("qrscanner");
        processor = ARKitMarkerlessProcessor::initWithDelegate(
            std::make_shared<kestrin::test::RecordingListener>(), nullptr);
        processor->setup(options.width, options.height);
        processor->start();
        processor->startCamera();
        KestrinQRScanner::getInstance()->scan([this](const std::string& text) { texts.push_back(text); });
    }
    ~Scan() {
        processor->detach();
        processor.reset();
        system->queues.drop();
        resetSingletons();
        platform::installPlatform(nullptr);
    }
    void look() {
        system->queues.runWorkers();
        system->queues.runMain();
    }

    std::shared_ptr<SeeingPlatform> system;
    std::shared_ptr<ARKitMarkerlessProcessor> processor;
    std::vector<std::string> texts;
};

TEST(QrScan, FindsTheCodeOfTheDefaultRoomOnTheWay) {
    Scan scan({});
    int frames = 0;
    for (; scan.texts.empty() && frames < 60; ++frames) {
        ASSERT_TRUE(scan.system->room.step()) << "pictures are given back";
        scan.look();
    }
    EXPECT_THAT(scan.texts, ElementsAre("https://kestrin.example/room"));
}

TEST(QrScan, ReadsEveryCodeOfAFrameAndHoldsNoMoreThanThePool) {
    SimulatedOptions options;
    options.width = 646; // rows longer than what is seen of them
    options.room = makeRoom(R"({
      "surfaces": [{"name": "wall", "center": [0, 1, -2], "size": [4, 2.6], "facing": [0, 0, 1], "texture": "plaster"}],
      "codes": [
        {"name": "a", "text": "upright", "center": [-0.5, 1, -2], "facing": [0, 0, 1], "width": 0.5},
        {"name": "b", "text": "turned \u00e9", "center": [0.5, 1, -2], "facing": [0, 0, 1], "up": [1, 0.6, 0], "width": 0.5}],
      "camera": {"period": 1, "path": [{"time": 0, "position": [0, 1, 0], "lookAt": [0, 1, -1]}]}})");
    Scan scan(options);
    ASSERT_TRUE(scan.system->room.step()) << "the first takes its time on a busy machine";
    int frames = 1;
    while (scan.system->room.step(1))
        ++frames;
    EXPECT_LE(frames, 3);
    EXPECT_EQ(scan.system->queues.waitingWorkerTasks(), std::size_t(frames)) << "every frame is looked at";
    scan.look();
    EXPECT_THAT(scan.texts, UnorderedElementsAre("upright", "turned \u00e9"));
    EXPECT_TRUE(scan.system->room.step());
}

} // namespace

} // namespace kestrin::session::test
