// kestrin-view as a person runs it.

#include "Program.h"

#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <regex>

namespace kestrin::test {

namespace {

Outcome run(const std::vector<std::string>& arguments) { return runProgram(KESTRIN_VIEW, arguments); }

const std::string kPage = KESTRIN_WEB_DIST "/demo";

std::string temporary(const std::string& name, const std::string& text) {
    const std::string file = testing::TempDir() + name;
    std::ofstream(file) << text;
    return file;
}

TEST(ViewProgram, SaysInOneLineWhatIsWrong) {
    const std::string emptyRecording = testing::TempDir() + "empty.krs";
    std::filesystem::create_directories(emptyRecording);
    const std::string room = temporary("bad-room.json", R"({"surfaces": 7})");
    expectRefused(KESTRIN_VIEW,
                  {{{}, "--page"},
                   {{"--nonsense"}, "--nonsense"},
                   {{"extra", "--page", kPage}, "extra"},
                   {{"--page", "/no/such/page"}, "/no/such/page"},
                   {{"--page", kPage, "--key", "e30="}, "--key"},
                   {{"--key", "no key string"}, "Invalid Settings"},
                   {{"--page", kPage, "--session", "live"}, "live"},
                   {{"--page", kPage, "--session", "simulate:/no/such/room.json"}, "/no/such/room.json"},
                   {{"--page", kPage, "--session", "simulate:" + room}, room + ": surfaces"},
                   {{"--page", kPage, "--size", "640"}, "640"},
                   {{"--page", kPage, "--size", "0x480"}, "0x480"},
                   {{"--page", kPage, "--orientation", "up"}, "up"},
                   {{"--page", kPage, "--mounting", "loose"}, "loose"},
                   {{"--page", kPage, "--frames", "-3"}, "-3"},
                   {{"--page", kPage, "--screenshot", "/no/such/folder/a.png"}, "/no/such/folder"},
                   {{"--page", kPage, "--log-level", "loud"}, "loud"},
                   {{"--page", kPage, "--grant", "camera,phots"}, "phots"},
                   {{"--page", kPage, "--session", "/no/such/desk.krs"}, "/no/such/desk.krs"},
                   {{"--page", kPage, "--session", emptyRecording}, emptyRecording + "/session.jsonl"},
                   {{"--page", kPage, "--record", emptyRecording}, "there is one already"},
                   {{"--page", kPage, "--record", "desk.mkv"}, "desk.mkv"},
                   {{"--page", kPage, "--speed", "0"}, "--speed"},
                   {{"--page", kPage, "--loop"}, "--loop"},
                   {{"--page", kPage, "--step", "--speed", "2"}, "--step"},
                   {{"--page", kPage, "--session", emptyRecording, "--mounting", "turned"}, "--mounting"},
                   {{"--page", kPage, "--host-map", "nonsense"}, "nonsense"}});
}

TEST(ViewProgram, ExplainsItself) {
    EXPECT_TRUE(std::regex_match(run({"--version"}).out, std::regex(R"(kestrin-view \d+\.\d+\.\d+\n)")));
    EXPECT_NE(run({"--help"}).out.find("--page"), std::string::npos);
    g_setenv("KESTRIN_DEBUG", "help", TRUE);
    EXPECT_NE(run({}).out.find("\n  network "), std::string::npos);
    g_unsetenv("KESTRIN_DEBUG");
}

TEST(ViewProgram, EndsAfterItsFramesWithASummaryAndAScreenshot) {
    const std::string file = testing::TempDir() + "view.png";
    std::filesystem::remove(file);
    const Outcome outcome = run(
        {"--page", kPage, "--size", "320x240", "--frames", "45", "--log-level", "off", "--screenshot", file});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::smatch found;
    ASSERT_TRUE(std::regex_search(
        outcome.out, found,
        std::regex(R"(^frames (\d+)  poses received by the page (\d+)  .*milliseconds \d+)")))
        << outcome.out;
    EXPECT_GE(std::stoi(found[1]), 45);
    EXPECT_GT(std::stoi(found[2]), 0);
    EXPECT_LE(std::stoi(found[2]), std::stoi(found[1]));
    std::ifstream png(file, std::ios::binary);
    std::string head(24, '\0');
    png.read(head.data(), 24);
    EXPECT_EQ(head.substr(1, 3), "PNG");
    EXPECT_EQ(head.substr(16), std::string("\0\0\x01\x40\0\0\0\xF0", 8)) << "not 320x240";
}

TEST(ViewProgram, ShowsThePagesOfTheGuides) {
    const TemporaryFolder page;
    std::filesystem::copy(KESTRIN_WEB_DIST "/client/kestrin.js", page / "kestrin.js");
    for (const char* name : {"page-guide.md", "protocol.md"}) {
        std::ifstream file(std::string(KESTRIN_DOCS "/") + name);
        const std::string guide(std::istreambuf_iterator<char>(file), {});
        const auto from = guide.find("```html\n") + 8;
        std::ofstream(page / "index.html") << guide.substr(from, guide.find("```", from) - from);
        const Outcome outcome = run(
            {"--page", page.path().string(), "--size", "320x240", "--frames", "20", "--log-level", "debug"});
        EXPECT_EQ(outcome.status, 0) << name << '\n' << outcome.err;
        EXPECT_NE(outcome.err.find("onStartMarkerless - UI template call"), std::string::npos) << name;
        EXPECT_FALSE(std::regex_search(outcome.err, std::regex("https://[^\n]* CONSOLE JS ERROR")))
            << name << '\n'
            << outcome.err;
    }
}

TEST(ViewProgram, EndsWithTheReasonWhenItsServerIsNotTrusted) {
    for (const bool byVariable : {false, true}) {
        std::vector<std::string> arguments{"--page", kPage, "--size", "320x240", "--frames", "10"};
        byVariable ? (void)g_setenv("KESTRIN_STRICT_TLS", "1", TRUE) : arguments.push_back("--strict-tls");
        const Outcome outcome = run(arguments);
        g_unsetenv("KESTRIN_STRICT_TLS");
        EXPECT_EQ(outcome.status, 1);
        for (const char* line :
             {"The certificate of 127.0.0.1 is not one that the system trusts",
              "KestrinView - start - No answer from 127.0.0.1",
              "\nkestrin-view: no answer from https://127.0.0.1; certificates are checked"})
            EXPECT_NE(outcome.err.find(line), std::string::npos) << line << '\n' << outcome.err;
    }
}

TEST(ViewProgram, PlaysWhatItHasRecorded) {
    const TemporaryFolder folder;
    const std::string kept = folder / "room.krs";
    const Outcome recorded =
        run({"--page", kPage, "--size", "320x240", "--frames", "30", "--log-level", "off", "--record", kept});
    EXPECT_EQ(recorded.status, 0) << recorded.err;
    std::smatch found;
    ASSERT_TRUE(
        std::regex_search(recorded.out, found, std::regex(R"(recorded (\d+) frames in .*, missed \d+)")))
        << recorded.out;
    EXPECT_GE(std::stoi(found[1]), 15);
    for (const char* pace : {"--step", "--speed=max"}) {
        const Outcome played = run({"--page", kPage, "--size", "320x240", "--frames", "1000000",
                                    "--log-level", "off", "--session", kept, pace});
        EXPECT_EQ(played.status, 0) << played.err << " the recording's end ends it";
    }
}

} // namespace

} // namespace kestrin::test
