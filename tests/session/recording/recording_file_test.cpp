#include "Recording.h"
#include "session/recording/LineText.h"

#include <functional>
#include <numbers>

namespace kestrin::session::test {

namespace {

using Lines = std::vector<std::string>;

struct RecordingFile : testing::Test {
    kestrin::test::TemporaryFolder scratch;
    const std::filesystem::path folder = scratch / "desk.krs", text = folder / "session.jsonl",
                                video = folder / "video.mkv";
};

TEST_F(RecordingFile, EverythingComesBackAsItWas) {
    std::vector<RecordedFrame> frames;
    for (int i = 0; i < 9; ++i)
        frames.push_back(testFrame(i));
    const auto plane = testPlane("A", true);
    const std::string name = "poster \\ \"\xC3\xA4\"";
    frames[0].frame.reason = platform::TrackingReason::relocalizing;
    frames[1].frame.ambientIntensity = 1000 / 3.0;
    frames[2].frame.anchors.added = {plane, testImage("B", name, true)};
    const auto bare = std::make_shared<platform::ArAnchor>(*testImage("C", name, true));
    frames[3].frame.anchors = {{bare}, {testImage("B", name, false)}, {plane}};
    frames[4].imu = {{0.1 + 0.2, {1e-300, -0.1, 5e-324}, {9.80665, 0.1 * 3, std::numbers::pi * 1e20}},
                     {0.31, {}, {0, 0, 1 / 3.0}}};
    record(folder, frames);

    const auto reader = openRecording(folder);
    EXPECT_TRUE(reader->isFinished());
    EXPECT_EQ(headerLine(reader->info()), headerLine(testInfo()));
    ASSERT_EQ(reader->size(), frames.size());
    Nv12Buffer picture(96, 64);
    for (const std::size_t i : {0, 1, 2, 3, 4, 8, 7, 0}) {
        EXPECT_EQ(reader->frame(i).frame.sensorPose, frames[i].frame.sensorPose);
        EXPECT_EQ(frameLine(reader->frame(i)), frameLine(frames[i]));
        ASSERT_TRUE(reader->picture(i, picture));
        EXPECT_EQ(pixelsOf(picture), pixelsOf(testPicture(96, 64, unsigned(i)))) << i;
    }
    const auto* back =
        dynamic_cast<const platform::ArPlaneAnchor*>(reader->frame(2).frame.anchors.added[0].get());
    EXPECT_EQ(back->geometry->vertices, plane->geometry->vertices);
    EXPECT_EQ(back->geometry->triangleIndices, plane->geometry->triangleIndices);
    EXPECT_EQ(reader->frame(4).imu[0].rotation[2], 5e-324);
    EXPECT_EQ(reader->frame(4).imu[0].acceleration[2], std::numbers::pi * 1e20);
}

// So that a process that is killed leaves all but the frame it was at; odd sizes keep every pixel.
TEST_F(RecordingFile, WhatWasAddedIsThereAtOnceAndWhenTheWriterIsGivenUp) {
    const auto was = testPicture(161, 121, 7);
    auto writer = createRecording(folder, testInfo(161, 121));
    EXPECT_FALSE(writer->add(testFrame(0), was));
    for (int round = 0; round < 2; ++round, writer.reset()) {
        Nv12Buffer back(161, 121), other(160, 121);
        const auto reader = openRecording(folder);
        EXPECT_FALSE(reader->isFinished());
        EXPECT_TRUE(reader->picture(0, back));
        EXPECT_EQ(pixelsOf(back), pixelsOf(was));
        EXPECT_FALSE(reader->picture(0, other));
        EXPECT_FALSE(reader->picture(1, back));
    }
}

TEST_F(RecordingFile, DamageIsOneErrorWithFileAndLine) {
    struct Case {
        std::function<void(Lines&)> damage;
        std::string error;
        int readable; ///< frames, when damage is tolerated; -1 for none at all
    };
    /// In one line one text for another.
    const auto swap = [](std::size_t line, const std::string& from, const std::string& to) {
        return [=](Lines& lines) {
            std::string& changed = lines[line - 1];
            changed.replace(changed.find(from), from.size(), to);
        };
    };
    const std::string jsonl = "/session.jsonl:", mkv = "/video.mkv: ", pose = "\"pose\":[1,";
    const std::vector<Case> table{
        {swap(1, "\"kestrin-recording\":1", "\"kestrin-recording\":2"),
         jsonl + "1: kestrin-recording: version 2 is newer than 1, which this program reads", -1},
        {swap(1, ":96", ":98"), mkv + "has pictures of 96x64", -1},
        {swap(2, pose, "\"pose\":[2,"), jsonl + "2: pose: expected a rotation and a translation", 0},
        {swap(3, "\"updated\"", "\"added\""), jsonl + "3: added[0].id: is there already", 1},
        {[](Lines& l) { l[3] = l[2]; }, jsonl + "4: time: expected a time after that of the frame before", 2},
        {[](Lines& l) { l[4].clear(); }, jsonl + "5: not JSON", 3},
        {swap(6, "4", "5"), jsonl + "6: frames: expected 4, as many as there are", 4},
        {[&](Lines&) { std::filesystem::resize_file(video, std::filesystem::file_size(video) / 2); },
         mkv + "ends after 1 of 4 frames", 1},
        {[&](Lines&) { std::filesystem::remove(video); }, mkv + "cannot be read", -1},
    };
    std::vector<RecordedFrame> frames{testFrame(0), testFrame(1), testFrame(2), testFrame(3)};
    frames[0].frame.anchors.added = {testPlane("A", true)};
    frames[1].frame.anchors.updated = {testPlane("A", false)};
    for (const auto& [damage, error, readable] : table) {
        std::filesystem::remove_all(folder);
        record(folder, frames);
        Lines lines;
        std::ifstream stream(text);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        damage(lines);
        std::ofstream out(text);
        for (const std::string& line : lines)
            out << line << '\n';
        out.close();
        const auto refused = RecordingReader::open(folder);
        ASSERT_EQ(refused.index(), 1U) << error;
        EXPECT_EQ(std::get<1>(refused).text, folder.string() + error);
        const auto tolerated = RecordingReader::open(folder, Damage::tolerated);
        ASSERT_EQ(tolerated.index() == 0, readable >= 0) << error;
        if (readable < 0)
            continue;
        const auto& reader = std::get<0>(tolerated);
        EXPECT_EQ(reader->size(), std::size_t(readable));
        EXPECT_EQ(reader->damage()->text, folder.string() + error);
        Nv12Buffer picture(96, 64);
        for (std::size_t i = 0; i < reader->size(); ++i)
            EXPECT_TRUE(reader->picture(i, picture)) << error;
    }
}

} // namespace

} // namespace kestrin::session::test
