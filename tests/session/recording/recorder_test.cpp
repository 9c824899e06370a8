#include "../FakeSource.h"
#include "Recording.h"
#include "session/SourcedSession.h"
#include "session/recording/Recorder.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>

#include <set>

namespace kestrin::session::test {

namespace {

using platform::ArAnchors;
using testing::ElementsAre;

struct RecorderTest : testing::Test {
    kestrin::test::TemporaryFolder scratch;
    const std::filesystem::path folder = scratch / "desk.krs";
    std::vector<std::string> log;
    std::shared_ptr<Recorder> recorder = std::get<0>(
        Recorder::create({folder, "a test", [this](std::string_view line) { log.emplace_back(line); }}));
};

std::string identifiers(const ArAnchors& anchors) {
    std::string text;
    for (const auto& anchor : anchors)
        text += anchor->identifier;
    return text;
}

TEST_F(RecorderTest, WhatItMissesIsCountedAndItsAnchorsAreNotLost) {
    const int width = 1024, height = 768;
    const auto picture = std::make_shared<const Nv12Buffer>(testPicture(width, height, 1));
    for (int i = 0; i < 300; ++i) {
        // One anchor comes in each frame, and stays for ten.
        TappedFrame tapped{testInfo(width, height).camera, 30, testFrame(i).frame, {}, picture};
        for (int k = std::max(0, i - 9); k <= i; ++k)
            tapped.anchors.push_back(testPlane(std::to_string(k), false));
        recorder->deliver(std::move(tapped));
    }
    recorder->finish();
    EXPECT_GT(recorder->missed(), 0U);
    EXPECT_EQ(recorder->recorded() + recorder->missed(), 300U);
    EXPECT_THAT(log, ElementsAre("Kestrin - recording - " + folder.string() + ": " +
                                 std::to_string(recorder->recorded()) + " frames, " +
                                 std::to_string(recorder->missed()) + " missed"));
    const auto reader = openRecording(folder);
    EXPECT_EQ(reader->size(), recorder->recorded());
    std::set<std::string> there, expected;
    for (std::size_t f = 0; f < reader->size(); ++f) {
        const SourcedFrame& frame = reader->frame(f).frame;
        for (const auto& anchor : frame.anchors.removed)
            there.erase(anchor->identifier);
        for (const auto& anchor : frame.anchors.added)
            there.insert(anchor->identifier);
        const int i = int(std::lround((frame.time - testFrame(0).frame.time) * 29.97));
        expected.clear();
        for (int k = std::max(0, i - 9); k <= i; ++k)
            expected.insert(std::to_string(k));
        EXPECT_EQ(there, expected) << i;
    }
}

/// The changes of anchors that a recording holds, frame by frame.
std::vector<std::string> changesOf(const RecordingReader& reader) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < reader.size(); ++i) {
        const AnchorChanges& changes = reader.frame(i).frame.anchors;
        all.push_back("-" + identifiers(changes.removed) + "+" + identifiers(changes.added) + "~" +
                      identifiers(changes.updated));
    }
    return all;
}

TEST_F(RecorderTest, SessionsOneAfterTheOtherGiveOneRecording) {
    const auto script = std::make_shared<FakeSource::Script>();
    script->count = 3;
    script->anchors[0].added = {testPlane("A", true), testPlane("B", true)};
    script->anchors[1].updated = {testPlane("A", true)};
    for (int i = 0; i < 2; ++i) {
        SessionOptions options;
        options.pacing = Pacing::stepped;
        options.buffers = 2;
        options.tap = recorder;
        SourcedSession session(std::make_unique<FakeSource>(script), options);
        session.run({}, 0);
        EXPECT_TRUE(session.step());
        session.removeAnchor("B");
        EXPECT_TRUE(session.step() && session.step());
        script->anchors[0].added = {testPlane("A", true)};
    }
    recorder->finish();
    const auto reader = openRecording(folder);
    EXPECT_TRUE(reader->isFinished());
    EXPECT_THAT(changesOf(*reader), ElementsAre("-+AB~", "-B+~A", "-+~", "-+~A", "-+~A", "-+~"));
    for (std::size_t i = 0; i < reader->size(); ++i)
        EXPECT_NEAR(reader->frame(i).frame.time, 0.01 * double(i), 1e-9);
    const auto second = Recorder::create({folder, "", {}});
    EXPECT_EQ(std::get<RecordingError>(second).text, folder.string() + ": is there already");
}

TEST_F(RecorderTest, AFullDiskIsOneLogLine) {
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{4000, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto script = std::make_shared<FakeSource::Script>();
    SessionOptions options;
    options.pacing = Pacing::asTaken;
    options.tap = recorder;
    {
        SourcedSession session(std::make_unique<FakeSource>(script), options);
        session.run({}, 0);
        while (session.frames() < 200)
            std::this_thread::yield();
    }
    recorder->finish();
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_THAT(log,
                ElementsAre("Kestrin - recording - " + (folder / "video.mkv").string() + ": File too large"));
    const auto reader = openRecording(folder);
    EXPECT_FALSE(reader->isFinished());
    EXPECT_EQ(reader->size(), recorder->recorded());
}

} // namespace

} // namespace kestrin::session::test
