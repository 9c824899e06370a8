#include "Listener.h"
#include "Scene.h"
#include "session/Geometry.h"
#include "session/SimulatedTracking.h"

#include <gmock/gmock.h>

#include <set>

namespace kestrin::session::test {

namespace {

using platform::ArConfiguration;
using platform::ArImageAnchor;
using platform::ArPlaneAnchor;
using testing::ElementsAre;
using FrameRef = std::shared_ptr<const platform::ArFrame>;

/// A camera that passes the middle of a room with a table and two pictures; tracking begins late.
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
  "camera": {"period": 8, "path": [
    {"time": 0, "position": [0, 1.5, 1.4], "lookAt": [0, 1, 0]},
    {"time": 4, "position": [0.3, 1.5, 1.4], "lookAt": [0, 1, 0]}]},
  "tracking": [{"from": 0, "to": 0.5, "reason": "initializing"}]
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

TEST_F(SimulatedSessionTest, AnchorsAreOfTheKindsAskedFor) {
    const auto heights = [&] {
        std::multiset<float> result;
        for (const auto& plane : anchors<ArPlaneAnchor>())
            result.insert(plane->transform[3].y);
        return result;
    };
    configuration.planeDetection = ArConfiguration::kHorizontal;
    ask("mars");
    run();
    steps(2);
    EXPECT_TRUE(frames.back()->anchors.empty()) << "tracking is not normal yet";
    steps(1);
    EXPECT_THAT(heights(), ElementsAre(0, 0.75F));
    EXPECT_EQ(frames.back()->anchors.size(), 2U);

    configuration.planeDetection = ArConfiguration::kVertical;
    ask("17",
        gtk::PixbufCodec().decode(gtk::PixbufCodec().encodeJpeg(options.room->picture("postcard"), 0.6)));
    run();
    steps(3);
    EXPECT_THAT(heights(), ElementsAre(1.3F));
    EXPECT_TRUE(anchors<ArPlaneAnchor>()[0]->isVertical);
    ASSERT_EQ(anchors<ArImageAnchor>().size(), 1U) << "known by its look";
    EXPECT_EQ(anchors<ArImageAnchor>()[0]->transform,
              rigid({1, 0, 0}, {0, 0, 1}, {0, -1, 0}, {0.5F, 1.3F, -2.5F}));
}

} // namespace

} // namespace kestrin::session::test
