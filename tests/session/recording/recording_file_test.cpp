#include "Recording.h"
#include "session/recording/LineText.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <functional>
#include <numbers>
#include <sstream>

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
    for (const std::size_t i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 2, 8, 7, 0}) {
        const SourcedFrame &back = reader->frame(i).frame, &was = frames[i].frame;
        EXPECT_EQ(back.sensorPose, was.sensorPose);
        EXPECT_EQ(back.time, was.time);
        EXPECT_EQ(back.intrinsics.fx, was.intrinsics.fx);
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

TEST_F(RecordingFile, WhatCannotBeReadIsNotWritten) {
    auto frame = testFrame(0);
    frame.frame.sensorPose[3].x = NAN;
    const auto writer = createRecording(folder);
    EXPECT_EQ(writer->add(frame, testPicture(96, 64, 0))->text, text.string() + ":2: not JSON");
    EXPECT_TRUE(writer->add(testFrame(1), testPicture(96, 64, 0))) << "it ended there";
    const auto second = RecordingWriter::create(folder, testInfo());
    EXPECT_EQ(std::get<RecordingError>(second).text, folder.string() + ": is there already");
}

std::string bytesOf(const std::filesystem::path& file) {
    std::stringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

std::string& replace(std::string& line, const std::string& from, const std::string& to) {
    const std::size_t at = line.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return line.replace(at, from.size(), to);
}

TEST_F(RecordingFile, DamageIsOneErrorWithFileAndLine) {
    struct Case {
        std::function<void(Lines&)> damage;
        std::string error;
        int readable; ///< frames, when damage is tolerated; -1 for none at all
    };
    /// In one line one text for another.
    const auto swap = [](std::size_t line, const std::string& from, const std::string& to) {
        return [=](Lines& lines) { replace(lines[line - 1], from, to); };
    };
    const std::string jsonl = "/session.jsonl:", mkv = "/video.mkv: ", pose = "\"pose\":[1,";
    const std::vector<Case> table{
        {swap(1, "{", ""), jsonl + "1: not JSON", -1},
        {swap(1, "\"kestrin-recording\":1", "\"kestrin-recording\":2"),
         jsonl + "1: kestrin-recording: version 2 is newer than 1, which this program reads", -1},
        {swap(1, ":96", ":9600"), jsonl + "1: width: expected a number from 16 to 8192", -1},
        {swap(1, ":96", ":98"), mkv + "has pictures of 96x64", -1},
        {swap(2, pose, "\"pose\":["), jsonl + "2: pose: expected 16 finite numbers", 0},
        {swap(2, pose, "\"pose\":[1e39,"), jsonl + "2: pose: expected 16 finite numbers", 0},
        {swap(2, pose, "\"pose\":[2,"), jsonl + "2: pose: expected a rotation and a translation", 0},
        {swap(3, "[0,2,1", "[0,3,1"),
         jsonl +
             "3: updated[0].triangles: expected whole numbers below the count of vertices, three a triangle",
         1},
        {swap(2, "\"added\"", "\"updated\""), jsonl + "2: updated[0].id: was never added", 0},
        {swap(3, "\"updated\"", "\"added\""), jsonl + "3: added[0].id: is there already", 1},
        {swap(3, "\"time\":", "\"time\":-"), jsonl + "3: time: expected a number from 0 to 1000000000", 1},
        {[](Lines& l) { l[3] = l[2]; }, jsonl + "4: time: expected a time after that of the frame before", 2},
        {swap(5, "\"normal\"", "7"), jsonl + "5: tracking: expected a text", 3},
        {swap(5, "\"tracking\"", "\"trackin\""), jsonl + "5: trackin: unknown field", 3},
        {[](Lines& l) { l[4].clear(); }, jsonl + "5: not JSON", 3},
        {[](Lines& l) { l[4].append(5'000'000, ' '); }, jsonl + "5: longer than 4000000 bytes", 3},
        {swap(6, "4", "5"), jsonl + "6: frames: expected 4, as many as there are", 4},
        {[](Lines& l) { l.push_back("{}"); }, jsonl + "7: comes after the end", 4},
        {[&](Lines&) { std::filesystem::resize_file(video, std::filesystem::file_size(video) / 2); },
         mkv + "ends after 1 of 4 frames", 1},
        {[&](Lines&) { std::filesystem::remove(video); }, mkv + "cannot be read", -1},
        {[&](Lines&) { std::ofstream(video) << "This is no video, however long it is."; },
         mkv + "is no Matroska file with HuffYUV video", -1},
        {[&](Lines& l) { l.clear(), std::filesystem::remove(text); }, "/session.jsonl: cannot be read", -1},
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
        if (!lines.empty()) {
            std::ofstream out(text, std::ios::binary);
            for (const std::string& line : lines)
                out << line << '\n';
        }
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

TEST_F(RecordingFile, EveryCutOfAnUnfinishedRecordingPlaysUpToThere) {
    record(folder, {testFrame(0), testFrame(1), testFrame(2)});
    std::string lines = bytesOf(text);
    const std::string pictures = bytesOf(video);
    lines.resize(lines.rfind("{\"frames\""));
    const auto cut = [](const std::filesystem::path& file, const std::string& bytes, std::size_t size) {
        std::ofstream(file, std::ios::binary) << bytes.substr(0, size);
    };
    const auto sizeOf = [&] {
        const auto reader = openRecording(folder);
        return reader && !reader->isFinished() ? int(reader->size()) : -1;
    };
    cut(text, lines, lines.size());
    int before = 0;
    const std::size_t header = pictures.find("\x1F\x43\xB6\x75"), step = pictures.size() / 50;
    for (std::size_t size = header; size <= pictures.size(); size += step) {
        cut(video, pictures, size);
        const int now = sizeOf();
        EXPECT_TRUE(now >= before && now <= 3) << size;
        before = now;
    }
    cut(video, pictures, pictures.size());
    for (std::size_t size = lines.find('\n') + 1; size < lines.size(); size += 3) {
        cut(text, lines, size);
        // A line that lacks nothing but its end counts.
        EXPECT_EQ(sizeOf() + 1, std::count(lines.begin(), lines.begin() + std::ptrdiff_t(size) + 1, '\n'));
    }
}

} // namespace

} // namespace kestrin::session::test
