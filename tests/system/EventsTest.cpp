// Every tracking event, from a session that a test writes to what the page decodes.

#include "Stage.h"

#include "session/Geometry.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <cmath>

namespace kestrin::test {

namespace {

using boost::json::value;
using platform::Matrix;
using platform::TrackingReason;
using testing::DoubleNear;
using testing::Pointwise;

constexpr double kTurn = 0.3; // radians about y, of everything that is posed

/// Turned, at a place.
Matrix posed(float x, float y, float z) {
    return session::rigid({0, float(std::sin(kTurn / 2)), 0, float(std::cos(kTurn / 2))}, {x, y, z});
}

template <class Anchor>
std::shared_ptr<Anchor> anchor(const std::string& identifier, float x) {
    auto made = std::make_shared<Anchor>();
    made->identifier = identifier;
    made->transform = posed(x, -1, 2);
    return made;
}

std::shared_ptr<const platform::ArAnchor> plane(float x) {
    auto made = anchor<platform::ArPlaneAnchor>("PLANE", x);
    made->center = {0.25, 0, -0.125};
    made->extent = {1.5, 0, 0.75};
    made->geometry = std::make_shared<platform::ArPlaneGeometry>(
        platform::ArPlaneGeometry{{{0, 0, 0}, {1, 0, 0}, {0.5, 0, -1}}, {0, 1, 2}});
    return made;
}

std::shared_ptr<const platform::ArAnchor> picture(float x) {
    auto made = anchor<platform::ArImageAnchor>("IMAGE", x);
    auto reference = std::make_shared<platform::ArReferenceImage>();
    reference->name = "poster";
    reference->image = platform::Image(4, 2, std::vector<std::uint8_t>(32));
    reference->physicalWidth = 0.5;
    made->referenceImage = reference;
    return made;
}

/// Eight frames: anchors come with the third, change with the fifth and go with the seventh.
class ScriptedSource final : public session::FrameSource {
  public:
    session::CameraModel model() const override {
        return {{50, 60, 32, 24}, 64, 48, session::Mounting::turned};
    }
    double rate() const override { return 10; }
    std::optional<std::string> open() override { return std::nullopt; }
    void begin(const platform::ArConfiguration&, unsigned) override { m_index = 0; }
    void forget(const std::string&) override {}
    std::optional<double> nextTime() const override { return m_index / 10.0; }
    void skip() override { ++m_index; }
    std::optional<session::SourcedFrame> next(int, session::Nv12Buffer&) override {
        constexpr std::array kReasons{TrackingReason::initializing,
                                      TrackingReason::none,
                                      TrackingReason::none,
                                      TrackingReason::relocalizing,
                                      TrackingReason::excessiveMotion,
                                      TrackingReason::none,
                                      TrackingReason::insufficientFeatures,
                                      TrackingReason::none};
        const int i = m_index++;
        session::AnchorChanges changes;
        if (i == 2)
            changes.added = {plane(1), picture(3)};
        if (i == 4)
            changes.updated = {plane(1.5), picture(3.5)};
        if (i == 6)
            changes.removed = {plane(1.5), picture(3.5)};
        return session::SourcedFrame{i / 10.0,           posed(float(i) / 8, 1.25F, -0.5F),
                                     model().intrinsics, kReasons.at(std::size_t(i) % kReasons.size()),
                                     1000 + 100.0 * i,   std::move(changes)};
    }

  private:
    int m_index = 0;
};

class ScriptedTracking final : public session::SourcedTracking {
  public:
    explicit ScriptedTracking(session::SessionOptions options) : SourcedTracking(std::move(options)) {}

  protected:
    std::unique_ptr<session::FrameSource> makeSource() const override {
        return std::make_unique<ScriptedSource>();
    }
};

class Events : public testing::Test {
  protected:
    /// Runs the script, until the page has been told of it all, and pauses.
    void run(const std::vector<std::string>& flags) {
        StageOptions options;
        options.orientation = 3;
        options.application.featureFlags = flags;
        options.tracking = [](const platform::InterfaceOrientation& orientation) {
            session::SessionOptions session;
            session.pacing = session::Pacing::stepped;
            session.orientation = &orientation;
            return std::make_shared<ScriptedTracking>(session);
        };
        stage.emplace(options);
        ASSERT_TRUE(
            stage->runUntil([&] { return told("projection") > 1 && told("viewport") > 1; }, kPatience));
        stage->runFor(0.5);
        for (int i = 0; i < 8; ++i)
            ASSERT_TRUE(stage->step());
        ASSERT_TRUE(stage->runUntil([&] { return told("pose") == 8 && lastLight() > 0.4; }, kPatience));
        stage->view().pause();
        ASSERT_TRUE(stage->runUntil([&] { return told("resign") == 1; }, kPatience));
    }
    std::size_t told(const std::string& event) { return stage->told(event).size(); }
    double lastLight() { return told("light") ? stage->told("light").back().to_number<double>() : 0; }

    static void expectNumbers(const value& array, const std::vector<double>& wanted) {
        std::vector<double> numbers;
        for (const value& number : array.as_array())
            numbers.push_back(number.to_number<double>());
        EXPECT_THAT(numbers, Pointwise(DoubleNear(1e-6), wanted)) << array;
    }
    static void expectPose(const value& pose, double x, double y, double z) {
        expectNumbers(pose.at("position"), {x, y, z});
        expectNumbers(pose.at("orientation"), {0, std::sin(kTurn / 2), 0, std::cos(kTurn / 2)});
    }
    static void expectSize(const value& sized, double width, double height) {
        EXPECT_EQ(sized.at("width").to_number<double>(), width);
        EXPECT_EQ(sized.at("height").to_number<double>(), height);
    }
    /// Of the page's tracked thing: where it was added, where it was at last, and that it is gone.
    void expectAnchor(const std::string& kind, double addedX, double updatedX, double z, double width,
                      double height) {
        for (const auto& [event, x] :
             {std::pair{"Added", addedX}, {"Updated", updatedX}, {"Removed", updatedX}}) {
            const auto& values = stage->told(kind + event);
            ASSERT_FALSE(values.empty()) << event;
            expectPose(values.back().at("pose"), x, -1, z);
            expectSize(values.back(), width, height);
        }
        EXPECT_EQ(told(kind + "Added"), 1U);
        EXPECT_EQ(told(kind + "Removed"), 1U);
        EXPECT_GE(told(kind + "sStarted"), 1U);
        EXPECT_GT(told(kind + "sCleared"), told(kind + "sStarted")) << "before each start, and at the end";
    }

    std::optional<Stage> stage;
};

TEST_F(Events, FramesReachThePageAsTheyWereSent) {
    run({});
    ASSERT_FALSE(HasFatalFailure());
    const auto& poses = stage->told("pose");
    for (std::size_t i = 0; i < poses.size(); ++i) {
        expectPose(poses[i], double(i) / 8, 1.25, -0.5);
        EXPECT_NEAR(poses[i].at("timestamp").to_number<double>(), double(i) / 10 * 0.001, 1e-10);
    }
    EXPECT_NEAR(lastLight(), 1700 * 0.00025, 1e-6);
    std::vector<std::string> words;
    for (const value& word : stage->told("tracking"))
        words.emplace_back(word.as_string());
    EXPECT_THAT(words, testing::ElementsAre("Init", "Normal", "Relocalizing", "ExcessiveMotion", "Normal",
                                            "InsufficientFeatures", "Normal"));
    expectSize(stage->told("viewport").back(), 1280, 960);
    const auto& projection = stage->told("projection").back().at("native").as_array();
    EXPECT_NEAR(projection[0].to_number<double>(), 2 * 50 / 64.0, 1e-6);
    EXPECT_NEAR(projection[5].to_number<double>(), 2 * 60 / 48.0, 1e-6);
    // Without a mesh the centre is added, along the world's axes.
    expectAnchor("plane", 1.25, 1.75, 1.875, 1.5, 0.75);
}

TEST_F(Events, MeshesReachThePageAsTheyWereSent) {
    run({"planegeometry"});
    expectAnchor("plane", 1, 1.5, 2, 1.5, 0.75);
    ASSERT_FALSE(HasFatalFailure());
    const value& mesh = stage->told("planeUpdated").back().at("geometry");
    EXPECT_EQ(mesh, boost::json::parse(R"({"vertices":[[0,0,0],[1,0,0],[0.5,0,-1]],"indices":[0,1,2]})"));
}

TEST_F(Events, TriggersReachThePageAsTheyWereSent) {
    run({"nativetriggers", "triggerimage", "lockonloss"});
    expectAnchor("trigger", 3, 3.5, 2, 0.5, 0.25);
    ASSERT_FALSE(HasFatalFailure());
    EXPECT_EQ(stage->told("triggerAdded").back().at("id"), "poster");
    EXPECT_EQ(told("planeAdded"), 0U) << "never both";
}

} // namespace

} // namespace kestrin::test
