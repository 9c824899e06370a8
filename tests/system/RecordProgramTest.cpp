// kestrin-record as a person runs it.

#include "Program.h"
#include "session/import/DataSets.h"
#include "session/recording/Recording.h"

#include <boost/json.hpp>

#include <algorithm>
#include <csignal>
#include <regex>

namespace kestrin::test {

namespace {

namespace fs = std::filesystem;
using namespace session;
using namespace session::test;

Outcome run(const std::vector<std::string>& arguments) { return runProgram(KESTRIN_RECORD, arguments); }

/// Runs a command that must succeed in silence but for what it prints.
std::string done(const std::vector<std::string>& arguments) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "") << "no progress without a terminal";
    return outcome.out;
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

int largestDifference(const Nv12Buffer& one, const Nv12Buffer& other) {
    const auto a = pixelsOf(one), b = pixelsOf(other);
    int most = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

TEST(RecordProgram, ImportsSaysChecksTrimsExportsAndImportsAgain) {
    const TemporaryFolder folder;
    writeTum(folder);
    folder.write("rgb.txt",
                 "1.00 rgb/a.png\n1.02 rgb/b.png\n1.04 rgb/a.png\n1.06 rgb/b.png\n1.2 rgb/b.png\n");
    folder.write("groundtruth.txt", "0.99 1 2 3 -0.5 0.5 -0.5 0.5\n1.09 2 2 4 0.5 0.5 0.5 0.5\n");
    const std::string whole = folder / "whole.krs", part = folder / "part.krs", out = folder / "out";
    EXPECT_EQ(done({"import", "tum", folder.path(), whole}),
              whole + ": 4 frames, 0.060 s, 1 picture outside the ground truth left out\n");
    const auto info = boost::json::parse(done({"info", whole, "--json"}));
    EXPECT_EQ(info.at("width"), 160);
    EXPECT_EQ(info.at("height"), 120);
    EXPECT_EQ(info.at("frames"), 4);
    EXPECT_NEAR(info.at("rate").as_double(), 50, 1e-6);
    EXPECT_NEAR(info.at("duration").as_double(), 0.06, 1e-9);
    EXPECT_EQ(info.at("finished"), true);
    EXPECT_NE(done({"info", whole}).find("frames    4\n"), std::string::npos);
    EXPECT_EQ(done({"check", whole}), whole + ": 4 frames, whole\n");
    EXPECT_EQ(done({"trim", whole, part, "--from", "0.01", "--to", "0.04"}), part + ": 2 frames\n");
    EXPECT_EQ(done({"export", part, out}), out + ": 2 frames\n");
    EXPECT_EQ(done({"import", out, folder / "again.krs"}),
              (folder / "again.krs").string() + ": 2 frames, 0.020 s\n");

    const auto first = openRecording(whole), again = openRecording(folder / "again.krs");
    EXPECT_EQ(again->info().camera.intrinsics.cx, first->info().camera.intrinsics.cx);
    Nv12Buffer was(kWidth, kHeight), is(kWidth, kHeight);
    for (const std::size_t i : {0, 1}) {
        EXPECT_NEAR(again->frame(i).frame.time, 0.02 * double(i), 1e-9);
        for (std::size_t column = 0; column < 4; ++column) {
            const auto &a = first->frame(i + 1).frame.sensorPose[column],
                       &b = again->frame(i).frame.sensorPose[column];
            EXPECT_NEAR(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z), 0, 1e-6) << i << " " << column;
        }
        ASSERT_TRUE(first->picture(i + 1, was) && again->picture(i, is));
        EXPECT_LE(largestDifference(was, is), 1);
    }
}

TEST(RecordProgram, TrimKeepsTheAnchorsThatAreThere) {
    const TemporaryFolder folder;
    const auto anchor = [](const char* name, float x) {
        auto made = std::make_shared<platform::ArAnchor>();
        made->identifier = name;
        made->transform = platform::Matrix::identity();
        made->transform[3].x = x;
        return made;
    };
    std::vector<RecordedFrame> frames;
    for (int i = 0; i < 6; ++i)
        frames.push_back(testFrame(i));
    frames[0].frame.anchors.added = {anchor("A", 0), anchor("B", 0)};
    frames[1].frame.anchors = {{}, {anchor("A", 1)}, {anchor("B", 0)}};
    frames[2].frame.anchors.added = {anchor("C", 0)};
    frames[4].frame.anchors = {{anchor("D", 0)}, {anchor("A", 2)}, {anchor("C", 0)}};
    frames[2].imu = {{frames[1].frame.time + 0.01, {}, {}}, {frames[2].frame.time, {}, {1, 2, 3}}};
    record(folder / "all.krs", frames);
    const std::string from = std::to_string(frames[1].frame.time + 0.005);
    done({"trim", folder / "all.krs", folder / "end.krs", "--from", from});
    const auto end = openRecording(folder / "end.krs");
    ASSERT_EQ(end->size(), 4U);
    EXPECT_EQ(end->frame(0).frame.time, 0);
    EXPECT_EQ(end->frame(0).frame.intrinsics.fx, frames[2].frame.intrinsics.fx);
    ASSERT_EQ(end->frame(0).imu.size(), 1U) << "what was before the first frame is gone";
    EXPECT_EQ(end->frame(0).imu[0].acceleration[2], 3);
    const platform::ArAnchors& there = end->frame(0).frame.anchors.added;
    ASSERT_EQ(there.size(), 2U);
    EXPECT_EQ(there[0]->identifier, "A");
    EXPECT_EQ(there[0]->transform[3].x, 1) << "as it was updated before";
    EXPECT_EQ(there[1]->identifier, "C");
    EXPECT_EQ(end->frame(2).frame.anchors.removed[0]->identifier, "C");
    EXPECT_EQ(end->frame(2).frame.anchors.updated[0]->transform[3].x, 2);
}

TEST(RecordProgram, FindsDamageAndSavesWhatIsBeforeIt) {
    const TemporaryFolder folder;
    record(folder / "a.krs", {testFrame(0), testFrame(1), testFrame(2)});
    std::ifstream in(folder / "a.krs/session.jsonl");
    std::string header, one, two;
    std::getline(in, header) && std::getline(in, one) && std::getline(in, two);
    folder.write("a.krs/session.jsonl", header + "\n" + one + "\n" + two + "\n");
    EXPECT_NE(done({"info", folder / "a.krs"}).find("state     interrupted\n"), std::string::npos);
    EXPECT_NE(done({"check", folder / "a.krs"}).find("2 frames, whole up to where"), std::string::npos);

    folder.write("a.krs/session.jsonl", header + "\n" + one + "\n{\n");
    const Outcome check = run({"check", folder / "a.krs"});
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(std::ranges::count(check.err, '\n'), 1) << check.err;
    EXPECT_NE(check.err.find("session.jsonl:3: "), std::string::npos) << check.err;
    EXPECT_NE(done({"info", folder / "a.krs"}).find("session.jsonl:3: "), std::string::npos);
    EXPECT_EQ(run({"trim", folder / "a.krs", folder / "b.krs"}).status, 1);
    done({"trim", folder / "a.krs", folder / "b.krs", "--tolerant"});
    EXPECT_EQ(done({"check", folder / "b.krs"}), (folder / "b.krs").string() + ": 1 frame, whole\n");
}

TEST(RecordProgram, SaysInOneLineWhatIsWrong) {
    const TemporaryFolder folder;
    writeBoard(folder);
    fs::create_directory(folder / "empty");
    const std::string data = folder.path(), out = folder / "out.krs";
    const auto before = namesIn(folder.path());
    expectRefused(KESTRIN_RECORD, {{{}, "--help", 2},
                                   {{"play"}, "'play'", 2},
                                   {{"import"}, "FOLDER", 2},
                                   {{"import", "slam", data, out}, "'slam'", 2},
                                   {{"import", data, folder / "out"}, ".krs", 2},
                                   {{"import", data, out, "--frames", "5"}, "'5'", 2},
                                   {{"import", data, out, "--frames", "5:4"}, "'5:4'", 2},
                                   {{"import", data, out, "--frames", "7:9"}, "has 2 pictures", 1},
                                   {{"import", data, out, "--rate", "0"}, "--rate", 2},
                                   {{"import", data, out, "--loud"}, "--loud", 2},
                                   {{"import", folder / "empty", out}, "neither an EuRoC", 1},
                                   {{"import", folder / "nowhere", out}, "nowhere: no such folder", 1},
                                   {{"import", "tum", data, out}, "which camera?", 1},
                                   {{"import", data, folder / "no/out.krs"}, "no: no such folder", 1},
                                   {{"info", folder / "nowhere.krs"}, "nowhere.krs", 1},
                                   {{"check", data}, data, 1},
                                   {{"trim", out, folder / "x.krs", "--from", "-1"}, "--from", 2},
                                   {{"export", out, folder / "x", "--format", "gif"}, "'gif'", 2}});
    EXPECT_EQ(namesIn(folder.path()), before) << "nothing is left lying about";
    done({"import", data, out});
    EXPECT_NE(run({"import", data, out}).err.find("exists already"), std::string::npos);
}

TEST(RecordProgram, ExplainsItself) {
    EXPECT_TRUE(std::regex_match(done({"--version"}), std::regex(R"(kestrin-record \d+\.\d+\.\d+\n)")));
    const std::string help = done({"--help"});
    for (const std::string command : {"import", "info", "check", "trim", "export"}) {
        EXPECT_NE(help.find(command), std::string::npos);
        EXPECT_NE(done({command, "--help"}).find("kestrin-record " + command), std::string::npos);
    }
}

TEST(RecordProgram, AnInterruptedImportLeavesNothing) {
    const TemporaryFolder folder;
    writeBoard(folder);
    std::string poses;
    for (int i = 0; i < 20'000; ++i)
        poses += "0 0 0 0 0 1\n";
    folder.write("poses.txt", poses);
    for (int i = 2; i < 20'000; ++i)
        fs::create_symlink(folder / "images/a.png", folder / ("images/b" + std::to_string(i) + ".png"));
    fs::create_directory(folder / "out");
    const std::string out = folder / "out/out.krs", data = folder.path();
    const char* const raw[] = {KESTRIN_RECORD, "import", data.c_str(), out.c_str(), nullptr};
    GPid child = 0;
    ASSERT_TRUE(g_spawn_async(nullptr, const_cast<char**>(raw), nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                              nullptr, &child, nullptr));
    int status = 0;
    while (namesIn(folder / "out").empty() && waitpid(child, &status, WNOHANG) == 0)
        g_usleep(2000);
    EXPECT_EQ(namesIn(folder / "out").size(), 1U);
    kill(child, SIGINT);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 130) << status;
    EXPECT_TRUE(namesIn(folder / "out").empty());
}

} // namespace

} // namespace kestrin::test
