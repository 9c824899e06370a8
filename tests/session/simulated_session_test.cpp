#include "Discs.h"
#include "Listener.h"
#include "Scene.h"
#include "linux/storage/PixbufCodec.h"
#include "session/Geometry.h"

#include <ZXing/ReadBarcode.h>
#include <gmock/gmock.h>

#include <cstring>
#include <set>

namespace kestrin::session::test {

namespace {

using platform::ArConfiguration;
using platform::ArFrame;
using platform::ArImageAnchor;
using platform::ArPlaneAnchor;
using platform::TrackingReason;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using FrameRef = std::shared_ptr<const ArFrame>;

/// A camera that looks at the middle of a room with a table, two pictures and a code, then turns away.
const std::string kRoom = R"({
  "surfaces": [
    {"name": "floor", "center": [0, 0, 0], "size": [4, 5], "facing": [0, 1, 0], "texture": "checker", "plane": true},
    {"name": "wall", "center": [0, 1.3, -2.5], "size": [4, 2.6], "facing": [0, 0, 1], "texture": "plain", "plane": true},
    {"name": "slope", "center": [0, 2.5, -1], "size": [1, 1], "facing": [0, -1, 1], "texture": "plain", "plane": true}
  ],
  "boxes": [{"name": "table", "center": [0, 0.375, 0], "size": [1.2, 0.75, 0.8], "texture": "oak", "plane": true}],
  "pictures": [
    {"name": "poster", "image": "poster", "center": [-0.5, 1.3, -2.5], "facing": [0, 0, 1], "width": 0.6},
    {"name": "postcard", "image": "postcard", "center": [0.5, 1.3, -2.5], "facing": [0, 0, 1], "width": 0.5}
  ],
  "codes": [{"name": "code", "text": "hello room", "center": [0, 0.75, 0], "facing": [0, 1, 0], "width": 0.4}],
  "light": {"lumens": 800, "swing": 100, "period": 4},
  "camera": {"period": 10, "path": [
    {"time": 0, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]},
    {"time": 1, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]},
    {"time": 2, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]},
    {"time": 4, "position": [0, 1.5, 1.4], "lookAt": [4, 1.5, 1.5]},
    {"time": 6, "position": [0, 1.5, 1.4], "lookAt": [4, 1.5, 1.5]},
    {"time": 8, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]},
    {"time": 9, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]}]},
  "tracking": [{"from": 0, "to": 0.5, "reason": "initializing"}, {"from": 3, "to": 4, "reason": "excessiveMotion"}]
})";

struct SimulatedSessionTest : testing::Test {
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::vector<FrameRef> frames;
    SimulatedOptions options;
    std::unique_ptr<SimulatedTracking> tracking;
    std::shared_ptr<platform::ArSession> session;
    ArConfiguration configuration;

    SimulatedSessionTest() {
        options.room = makeRoom(kRoom);
        options.width = 320;
        options.height = 240;
        options.rate = 4;
        options.session.pacing = Pacing::stepped;
        options.session.buffers = 64;
        configuration.lightEstimationEnabled = true;
        listener->onFrame = [this](const FrameRef& frame) { frames.push_back(frame); };
    }
    void run(unsigned runOptions = platform::kResetTracking | platform::kRemoveExistingAnchors) {
        if (!session) {
            tracking = std::make_unique<SimulatedTracking>(options);
            session = tracking->makeSession();
            session->setDelegate(listener);
        }
        session->run(configuration, runOptions);
    }
    void steps(int count) {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(tracking->step());
    }
    void ask(const std::string& name, const platform::Image& image = {}) {
        auto reference = std::make_shared<platform::ArReferenceImage>();
        *reference = {name, image, 0.1};
        configuration.images.push_back(reference);
    }
    template <typename Anchor>
    std::vector<std::shared_ptr<const Anchor>> anchors() const {
        std::vector<std::shared_ptr<const Anchor>> result;
        for (const auto& anchor : frames.back()->anchors)
            if (auto typed = std::dynamic_pointer_cast<const Anchor>(anchor))
                result.push_back(typed);
        return result;
    }
};

std::vector<std::uint8_t> bytesOf(const platform::PixelBuffer& picture) {
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < 2; ++i) {
        const platform::PixelPlane plane = picture.plane(i);
        for (int y = 0; y < plane.height; ++y)
            bytes.insert(bytes.end(), plane.data + y * plane.stride,
                         plane.data + y * plane.stride + plane.width * (i + 1));
    }
    return bytes;
}

TEST_F(SimulatedSessionTest, TwoSessionsShowTheSame) {
    configuration.planeDetection = ArConfiguration::kHorizontal;
    run();
    steps(8);
    const std::vector<FrameRef> first = std::exchange(frames, {});
    session.reset();
    run();
    steps(8);
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i]->timestamp, frames[i]->timestamp);
        EXPECT_EQ(first[i]->camera->transform(), frames[i]->camera->transform());
        EXPECT_EQ(bytesOf(*first[i]->capturedImage), bytesOf(*frames[i]->capturedImage)) << i;
        ASSERT_EQ(first[i]->anchors.size(), frames[i]->anchors.size());
        for (std::size_t k = 0; k < first[i]->anchors.size(); ++k)
            EXPECT_EQ(first[i]->anchors[k]->identifier, frames[i]->anchors[k]->identifier);
    }
    EXPECT_NE(bytesOf(*first[0]->capturedImage), bytesOf(*first[7]->capturedImage));
}

TEST_F(SimulatedSessionTest, PicturesHaveTheFullRangeAndTheRightColours) {
    options.width = 161; // odd sizes have a last chroma column of half a pair
    options.height = 121;
    options.room = makeRoom(R"({
      "surfaces": [
        {"name": "white", "center": [-1, 1, -2], "size": [2, 1], "facing": [0, 0, 1], "texture": "plain", "glows": true},
        {"name": "red", "center": [1, 1, -2], "size": [2, 1], "facing": [0, 0, 1], "texture": "plain", "tint": [1, 0, 0], "glows": true},
        {"name": "blue", "center": [1, 0, -2], "size": [2, 1], "facing": [0, 0, 1], "texture": "plain", "tint": [0, 0, 1], "glows": true}],
      "camera": {"period": 1, "path": [{"time": 0, "position": [0, 0.5, 0], "lookAt": [0, 0.5, -1]}]}})");
    run();
    steps(1);
    const auto luma = frames[0]->capturedImage->plane(0), chroma = frames[0]->capturedImage->plane(1);
    const auto at = [&](int x, int y) {
        const std::uint8_t* pair = chroma.data + y / 2 * chroma.stride + x / 2 * 2;
        return std::array{int(luma.data[y * luma.stride + x]), int(pair[0]), int(pair[1])};
    };
    const auto near = [](int value) {
        return testing::AllOf(testing::Ge(value - 1), testing::Le(value + 1));
    };
    EXPECT_THAT(at(40, 40), ElementsAre(255, near(128), near(128))) << "white";
    EXPECT_THAT(at(40, 80), ElementsAre(0, near(128), near(128))) << "nothing is black";
    EXPECT_THAT(at(120, 40), ElementsAre(near(76), near(85), 255)) << "red";
    EXPECT_THAT(at(160, 80), ElementsAre(near(29), 255, near(107))) << "blue, in the last column";
}

TEST_F(SimulatedSessionTest, LightAndTrackingFollowTheScript) {
    run();
    steps(17);
    std::vector<TrackingReason> reasons;
    for (const FrameRef& frame : frames)
        reasons.push_back(frame->camera->trackingReason());
    EXPECT_EQ(std::count(reasons.begin(), reasons.end(), TrackingReason::initializing), 2);
    EXPECT_EQ(reasons[0], TrackingReason::initializing);
    EXPECT_EQ(std::count(reasons.begin(), reasons.end(), TrackingReason::excessiveMotion), 4);
    EXPECT_EQ(reasons[12], TrackingReason::excessiveMotion);
    EXPECT_NEAR(*frames[0]->ambientIntensity, 800, 1e-6);
    EXPECT_NEAR(*frames[4]->ambientIntensity, 900, 1e-6);
    EXPECT_NEAR(*frames[12]->ambientIntensity, 700, 1e-6);

    session->pause();
    run(platform::kResetTracking);
    steps(1);
    EXPECT_EQ(frames.back()->camera->trackingReason(), TrackingReason::initializing)
        << "tracking begins again";
    EXPECT_DOUBLE_EQ(frames.back()->timestamp, 17 / 4.0) << "time goes on";
    run(0);
    steps(2);
    EXPECT_EQ(frames.back()->camera->trackingReason(), TrackingReason::none);
}

TEST_F(SimulatedSessionTest, PlanesAreExactAndOfTheKindsAskedFor) {
    const auto heights = [&] {
        std::multiset<float> result;
        for (const auto& plane : anchors<ArPlaneAnchor>())
            result.insert(plane->transform[3].y);
        return result;
    };
    run();
    steps(3);
    EXPECT_TRUE(anchors<ArPlaneAnchor>().empty()) << "none was asked for";
    configuration.planeDetection = ArConfiguration::kHorizontal;
    run();
    steps(2);
    EXPECT_TRUE(anchors<ArPlaneAnchor>().empty()) << "tracking is not normal yet";
    steps(1);
    EXPECT_THAT(heights(), ElementsAre(0, 0.75F));
    EXPECT_EQ(listener->count("frame"), 6U);
    EXPECT_EQ(listener->events().back()[0], '+');
    configuration.planeDetection = ArConfiguration::kVertical | ArConfiguration::kHorizontal;
    run(0);
    steps(1);
    EXPECT_THAT(heights(), ElementsAre(0, 0.75F, 1.3F));

    for (const auto& plane : anchors<ArPlaneAnchor>()) {
        EXPECT_EQ(plane->isVertical, plane->transform[3].y == 1.3F);
        ASSERT_EQ(plane->geometry->triangleIndices.size(), 6U);
        ASSERT_EQ(plane->geometry->vertices.size(), 4U);
        EXPECT_EQ(2 * plane->geometry->vertices[1].x, plane->extent.x);
        EXPECT_EQ(2 * plane->geometry->vertices[1].z, plane->extent.z);
        // The triangles face the side that the plane is seen from.
        const auto& g = *plane->geometry;
        const auto corner = [&](std::size_t i) { return g.vertices[std::size_t(g.triangleIndices[i])]; };
        for (const std::size_t first : {0U, 3U})
            EXPECT_GT(cross(corner(first + 1) - corner(first), corner(first + 2) - corner(first)).y, 0);
        if (plane->transform[3].y == 0.75F) {
            EXPECT_EQ(plane->extent, (Vector3{1.2F, 0, 0.8F}));
            EXPECT_EQ(plane->transform, rigid({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0.75F, 0}));
        }
        if (plane->isVertical) {
            EXPECT_EQ(plane->transform, rigid({1, 0, 0}, {0, 0, 1}, {0, -1, 0}, {0, 1.3F, -2.5F}));
        }
    }
}

TEST_F(SimulatedSessionTest, RemovedAnchorsAreFoundAfreshUnderANewIdentifier) {
    configuration.planeDetection = ArConfiguration::kHorizontal;
    run(0);
    steps(3);
    std::set<std::string> all;
    const auto note = [&] {
        for (const auto& anchor : frames.back()->anchors)
            EXPECT_TRUE(all.insert(anchor->identifier).second) << anchor->identifier;
    };
    note();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_THAT(*all.begin(),
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-8[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    run(platform::kRemoveExistingAnchors);
    steps(1);
    note();
    EXPECT_EQ(all.size(), 4U);
    for (const std::string& identifier : all)
        EXPECT_EQ(listener->count("+" + identifier), 1U);
    const std::string table = frames.back()->anchors[1]->identifier;
    session->removeAnchor(table);
    session->removeAnchor("no such anchor");
    steps(1);
    EXPECT_EQ(listener->count("-" + table), 1U);
    EXPECT_EQ(frames.back()->anchors.size(), 2U);
    EXPECT_NE(frames.back()->anchors[1]->identifier, table);
    run(platform::kResetTracking);
    steps(1);
    EXPECT_EQ(frames.back()->anchors.size(), 2U) << "a reset alone keeps them";
}

TEST_F(SimulatedSessionTest, PicturesAreKnownByNameOrLook) {
    const gtk::PixbufCodec codec;
    ask("poster");
    ask("17", codec.decode(codec.encodeJpeg(options.room->picture("postcard"), 0.6)));
    ask("18", options.room->picture("code"));
    ask("mars");
    run(0);
    steps(2);
    EXPECT_TRUE(anchors<ArImageAnchor>().empty());
    steps(1);
    std::vector<std::string> names;
    for (const auto& anchor : anchors<ArImageAnchor>()) {
        names.push_back(anchor->referenceImage->name);
        EXPECT_TRUE(anchor->isTracked);
        EXPECT_EQ(anchor->referenceImage->physicalWidth, 0.1) << "says nothing of the true size";
        if (names.back() == "17") {
            EXPECT_EQ(anchor->transform, rigid({1, 0, 0}, {0, 0, 1}, {0, -1, 0}, {0.5F, 1.3F, -2.5F}));
        }
    }
    EXPECT_THAT(names, UnorderedElementsAre("poster", "17", "18"));
    const std::size_t told = listener->events().size();
    steps(8);
    EXPECT_EQ(listener->events().size(), told + 8) << "in a world they are found, not followed";
}

TEST_F(SimulatedSessionTest, AnImageOnlySessionFollowsOnePicture) {
    configuration.kind = ArConfiguration::Kind::imageOnly;
    configuration.planeDetection = ArConfiguration::kHorizontal;
    configuration.maximumNumberOfTrackedImages = 1;
    ask("poster");
    ask("postcard");
    run();
    steps(6);
    ASSERT_EQ(frames.back()->anchors.size(), 1U) << "no planes, and one picture at a time";
    const std::string first = frames.back()->anchors[0]->identifier;
    EXPECT_EQ(listener->count("~" + first), 3U);
    steps(14); // the camera has turned away
    EXPECT_FALSE(anchors<ArImageAnchor>()[0]->isTracked);
    const std::size_t updates = listener->count("~" + first);
    steps(2);
    EXPECT_EQ(listener->count("~" + first), updates) << "the loss is told once";
    session->removeAnchor(first);
    steps(14); // it looks back
    ASSERT_EQ(frames.back()->anchors.size(), 1U);
    EXPECT_NE(frames.back()->anchors[0]->identifier, first);
    EXPECT_TRUE(anchors<ArImageAnchor>()[0]->isTracked);
}

TEST_F(SimulatedSessionTest, TheCodeCanBeRead) {
    options.width = 640;
    options.height = 480;
    run();
    steps(1);
    const auto luma = frames[0]->capturedImage->plane(0);
    const auto results =
        ZXing::ReadBarcodes({luma.data, luma.width, luma.height, ZXing::ImageFormat::Lum, luma.stride});
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].text(), L"hello room");
}

TEST_F(SimulatedSessionTest, NonsenseOptionsAreBroughtIntoRange) {
    options.width = -3;
    options.height = 0;
    options.rate = NAN;
    options.session.buffers = -1;
    run();
    steps(2);
    EXPECT_EQ(frames.back()->capturedImage->width(), 16);
    EXPECT_NEAR(frames.back()->timestamp, 1 / 30.0, 1e-9);
}

} // namespace

} // namespace kestrin::session::test
