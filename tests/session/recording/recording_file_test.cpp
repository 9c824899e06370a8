#include "Recording.h"
#include "session/recording/LineText.h"

#include <gmock/gmock.h>

namespace kestrin::session::test {

namespace {

using platform::ArImageAnchor;
using platform::ArPlaneAnchor;

struct RecordingFile : testing::Test {
    ScratchFolder scratch;
    const std::filesystem::path folder = scratch / "desk.krs";
};

std::shared_ptr<ArPlaneAnchor> plane(const std::string& identifier) {
    auto anchor = std::make_shared<ArPlaneAnchor>();
    anchor->identifier = identifier;
    anchor->transform = testFrame(3).frame.sensorPose;
    anchor->center = {0.1F, 0, -0.7F};
    anchor->extent = {1.2F, 0, 0.8F};
    auto geometry = std::make_shared<platform::ArPlaneGeometry>();
    geometry->vertices = {{0.1F, 0, 0.3F}, {1e-7F, 0, 3e10F}, {-1 / 3.0F, 0, 2}};
    geometry->triangleIndices = {0, 2, 1, 1, 2, 0};
    anchor->geometry = geometry;
    anchor->isVertical = true;
    return anchor;
}

std::shared_ptr<ArImageAnchor> image(const std::string& identifier, bool isTracked) {
    auto reference = std::make_shared<platform::ArReferenceImage>();
    reference->name = "poster \\ \"\xC3\xA4\"";
    reference->physicalWidth = 0.1 + 0.2;
    auto anchor = std::make_shared<ArImageAnchor>();
    anchor->identifier = identifier;
    anchor->transform = testFrame(5).frame.sensorPose;
    anchor->referenceImage = reference;
    anchor->isTracked = isTracked;
    return anchor;
}

TEST_F(RecordingFile, EverythingComesBackAsItWas) {
    std::vector<RecordedFrame> frames;
    for (int i = 0; i < 9; ++i)
        frames.push_back(testFrame(i));
    frames[0].frame.reason = platform::TrackingReason::relocalizing;
    frames[1].frame.ambientIntensity = 1000 / 3.0;
    frames[2].frame.anchors.added = {plane("A"), image("B", true)};
    auto bare = std::make_shared<platform::ArAnchor>(*image("C", true));
    frames[3].frame.anchors = {{bare}, {image("B", false)}, {plane("A")}};
    frames[4].imu = {{0.1 + 0.2, {1e-300, -0.1, 5e-324}, {9.80665, 0.1 * 3, 123456.789e10}},
                     {0.31, {}, {0, 0, 1 / 3.0}}};
    record(folder, frames);

    const auto reader = openRecording(folder);
    EXPECT_TRUE(reader->isFinished());
    EXPECT_EQ(headerLine(reader->info()), headerLine(testInfo()));
    ASSERT_EQ(reader->size(), frames.size());
    Nv12Buffer picture(96, 64);
    const auto check = [&](std::size_t i) {
        const SourcedFrame &back = reader->frame(i).frame, &was = frames[i].frame;
        EXPECT_EQ(back.sensorPose, was.sensorPose);
        EXPECT_EQ(back.time, was.time);
        EXPECT_EQ(back.intrinsics.fx, was.intrinsics.fx);
        EXPECT_EQ(frameLine(reader->frame(i)), frameLine(frames[i]));
        ASSERT_TRUE(reader->picture(i, picture));
        EXPECT_EQ(pixelsOf(picture), pixelsOf(testPicture(96, 64, unsigned(i)))) << i;
    };
    for (const std::size_t i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 2, 8, 7, 0})
        check(i);
    const auto* back = dynamic_cast<const ArPlaneAnchor*>(reader->frame(2).frame.anchors.added[0].get());
    EXPECT_EQ(back->geometry->vertices, plane("")->geometry->vertices);
    EXPECT_EQ(back->geometry->triangleIndices, plane("")->geometry->triangleIndices);
    EXPECT_EQ(reader->frame(4).imu[0].rotation[2], 5e-324);
    EXPECT_EQ(reader->frame(4).imu[0].acceleration[1], 0.1 * 3);
}

} // namespace

} // namespace kestrin::session::test
