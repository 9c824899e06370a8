// The source of a camera's frames, on the fake cameras and the fake clock.

#include "session/CameraSource.h"

#include "support/FakeCapture.h"
#include "support/FakeDispatch.h"
#include "support/FakeLog.h"

#include <gmock/gmock.h>

namespace kestrin::session {
namespace {

using kestrin::test::FakeCamera;
using testing::ElementsAre;

struct CameraSourceTest : testing::Test {
    std::optional<SourcedFrame> nextAfter(double seconds) {
        dispatch.advance(seconds);
        return source.next(3, picture);
    }
    std::optional<SourcedFrame> nextOf(double presentationTime) {
        camera->take(std::make_shared<kestrin::test::FakePixelBuffer>(32, 16), presentationTime);
        dispatch.runWorkers();
        return nextAfter(0.03);
    }

    kestrin::test::FakeLog log;
    kestrin::test::FakeDispatch dispatch{log};
    kestrin::test::FakeCapture cameras;
    const std::shared_ptr<FakeCamera> camera = std::make_shared<FakeCamera>("Desk");
    std::vector<std::string> told;
    CameraSource source{{{50, 50, 16, 8}, 32, 16, Mounting::upright},
                        cameras,
                        dispatch,
                        [this](std::string_view line) { told.emplace_back(line); }};
    Nv12Buffer picture{32, 16};
};

TEST_F(CameraSourceTest, LooksForACameraUntilThereIsOneThatOpens) {
    camera->focuses = true;
    camera->error = "is busy";
    source.begin({}, 0);
    EXPECT_FALSE(nextAfter(0));
    EXPECT_FALSE(nextAfter(2));
    cameras.cameras = {camera};
    EXPECT_FALSE(nextAfter(2));
    EXPECT_FALSE(nextAfter(2));
    camera->error.clear();
    EXPECT_FALSE(nextAfter(2));
    EXPECT_THAT(told, ElementsAre("Kestrin - Camera - There is none.",
                                  "Kestrin - Camera - Desk cannot be opened: is busy"));
    EXPECT_DOUBLE_EQ(camera->longestFrame, 0.1);
    EXPECT_TRUE(camera->running);
    EXPECT_TRUE(camera->output->exactSize);
    EXPECT_EQ(camera->output->width, 32);
    source.rest();
    EXPECT_FALSE(camera->running) << "nobody is filmed while the session is paused";
}

TEST_F(CameraSourceTest, TimeGoesOnFromOneCameraToTheNext) {
    cameras.cameras = {camera};
    source.begin({}, 0);
    EXPECT_FALSE(nextAfter(0));
    EXPECT_DOUBLE_EQ(nextOf(100)->time, 0) << "when the session begins";
    const auto second = nextOf(100.25);
    EXPECT_DOUBLE_EQ(second->time, 0.25);
    EXPECT_EQ(second->reason, platform::TrackingReason::initializing);
    EXPECT_GT(source.nextTime().value(), dispatch.now());

    EXPECT_FALSE(nextAfter(9)) << "it has fallen silent";
    EXPECT_FALSE(camera->output) << "and is given up";
    EXPECT_FALSE(nextAfter(2));
    ASSERT_TRUE(camera->output);
    EXPECT_GT(nextOf(5)->time, 0.25);
}

} // namespace
} // namespace kestrin::session
