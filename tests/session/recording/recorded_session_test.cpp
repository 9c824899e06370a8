#include "Recording.h"
#include "session/recording/RecordedTracking.h"

#include <gmock/gmock.h>

#include <set>

namespace kestrin::session::test {

namespace {

using platform::ArConfiguration;
using testing::ElementsAre;
using FrameRef = std::shared_ptr<const platform::ArFrame>;

/// A recording with an anchor of each kind: A on the floor, B on the wall from frame 1 on, a poster that is
/// lost in frame 3; A is gone in frame 4.
struct RecordedSession : testing::Test {
    kestrin::test::TemporaryFolder scratch;
    const std::filesystem::path folder = scratch / "desk.krs";
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::vector<std::string> log;
    RecordedOptions options;
    ArConfiguration configuration;
    std::shared_ptr<RecordedTracking> tracking;
    std::shared_ptr<platform::ArSession> session;

    RecordedSession() {
        std::vector<RecordedFrame> frames;
        for (int i = 0; i < 6; ++i) {
            frames.push_back(testFrame(i));
            frames.back().frame.ambientIntensity = 900 + i;
        }
        frames[0].frame.anchors.added = {testPlane("A", false)};
        frames[1].frame.anchors.added = {testPlane("B", true), testImage("C", "poster", true)};
        frames[2].frame.anchors.updated = {testPlane("B", true), testPlane("A", false)};
        frames[3].frame.anchors.updated = {testImage("C", "poster", false)};
        frames[4].frame.anchors.removed = {testPlane("A", false)};
        record(folder, frames);
        options.folder = folder;
        options.session.pacing = Pacing::stepped;
        options.session.log = [this](std::string_view line) { log.emplace_back(line); };
        configuration.lightEstimationEnabled = true;
    }
    void run(unsigned runOptions = platform::kRemoveExistingAnchors) {
        if (!session) {
            tracking = std::get<0>(RecordedTracking::open(options));
            session = tracking->makeSession();
            session->setDelegate(listener);
        }
        session->run(configuration, runOptions);
    }
    void askForAll() {
        configuration.planeDetection = ArConfiguration::kHorizontal | ArConfiguration::kVertical;
        auto reference = std::make_shared<platform::ArReferenceImage>();
        reference->name = "poster";
        configuration.images = {reference};
    }
    /// What one session is told, with the times and places of its frames.
    std::string play(Pacing pacing) {
        options.session.pacing = pacing;
        session.reset();
        listener = std::make_shared<Listener>();
        std::string frames;
        listener->onFrame = [&](const FrameRef& frame) {
            frames += std::to_string(frame->timestamp) + " " +
                      std::to_string(frame->camera->transform()[3].x) + " ";
        };
        run();
        if (pacing == Pacing::stepped)
            while (tracking->step()) {
            }
        EXPECT_TRUE(listener->waitFor("frame", 6));
        session.reset();
        for (const std::string& event : listener->events())
            frames += event + " ";
        return frames;
    }
};

TEST_F(RecordedSession, GivesTheSameHoweverItIsPaced) {
    askForAll();
    const std::string first = play(Pacing::asTaken);
    EXPECT_THAT(first, testing::EndsWith("frame +A frame +B +C frame ~A ~B frame ~C frame -A frame "));
    EXPECT_EQ(play(Pacing::asTaken), first);
    EXPECT_EQ(play(Pacing::stepped), first);
}

TEST_F(RecordedSession, GivesTheAnchorsAskedForAndForgottenOnesAfresh) {
    configuration.planeDetection = ArConfiguration::kVertical;
    run();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(tracking->step());
    EXPECT_THAT(listener->events(), ElementsAre("frame", "frame", "+B", "frame", "~B"));

    askForAll();
    run(0);
    EXPECT_TRUE(tracking->step());
    EXPECT_THAT(listener->events(), testing::IsSupersetOf({"+A", "+C"})) << "what was there already";
    const auto& image = dynamic_cast<const platform::ArImageAnchor&>(*session->currentFrame()->anchors[2]);
    EXPECT_EQ(image.referenceImage, configuration.images[0]);
    EXPECT_FALSE(image.isTracked);

    configuration.kind = ArConfiguration::Kind::imageOnly;
    run(platform::kRemoveExistingAnchors);
    EXPECT_TRUE(tracking->step());
    ASSERT_EQ(session->currentFrame()->anchors.size(), 1U) << "the image, found again";
    EXPECT_NE(session->currentFrame()->anchors[0]->identifier, "C");

    configuration.kind = ArConfiguration::Kind::world;
    run(platform::kResetTracking | platform::kRemoveExistingAnchors);
    EXPECT_TRUE(tracking->step());
    EXPECT_EQ(session->currentFrame()->timestamp, testFrame(0).frame.time) << "from the beginning";
}

TEST_F(RecordedSession, LoopsWithRisingTimesAndAnchorsFoundAfresh) {
    askForAll();
    options.loops = true;
    std::vector<double> times;
    std::set<std::string> identifiers;
    listener->onFrame = [&](const FrameRef& frame) {
        times.push_back(frame->timestamp);
        for (const auto& anchor : frame->anchors)
            identifiers.insert(anchor->identifier);
        EXPECT_LE(frame->anchors.size(), 3U);
    };
    run();
    for (int i = 0; i < 15; ++i)
        ASSERT_TRUE(tracking->step());
    for (std::size_t i = 1; i < times.size(); ++i)
        EXPECT_NEAR(times[i] - times[i - 1], 1 / 29.97, 1e-9) << i;
    EXPECT_EQ(identifiers.size(), 9U);
    EXPECT_EQ(listener->count("-A") + listener->count("-B") + listener->count("-C"), 3U);
}

TEST_F(RecordedSession, WhatCannotBePlayedIsSaidAndPassedOver) {
    const auto video = folder / "video.mkv";
    options.loops = true;
    run();
    EXPECT_TRUE(tracking->step());
    std::filesystem::resize_file(video, std::filesystem::file_size(video) / 2);
    for (int i = 0; i < 12; ++i)
        EXPECT_TRUE(tracking->step());
    EXPECT_THAT(log, ElementsAre(testing::HasSubstr("cannot be decoded")));
}

} // namespace

} // namespace kestrin::session::test
