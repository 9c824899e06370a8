// kestrin-view as a person runs it.

#include "Program.h"

#include <algorithm>
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
    const std::string room = temporary("bad-room.json", R"({"surfaces": 7})");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "--page"},
        {{"--nonsense"}, "--nonsense"},
        {{"extra", "--page", kPage}, "extra"},
        {{"--page", "/no/such/page"}, "/no/such/page"},
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
        {{"--page", kPage, "--host-map", "nonsense"}, "nonsense"}};
    for (const auto& [arguments, mention] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_GT(outcome.status, 0) << mention;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with("kestrin-view: ")) << outcome.err;
        EXPECT_NE(outcome.err.find(mention), std::string::npos) << outcome.err;
    }
}

TEST(ViewProgram, ExplainsItself) {
    EXPECT_TRUE(std::regex_match(run({"--version"}).out, std::regex(R"(kestrin-view \d+\.\d+\.\d+\n)")));
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--page", "--session", "--size", "--orientation", "--mounting", "--frames",
                               "--screenshot", "--log-level", "--host-map", "--version"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
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

} // namespace

} // namespace kestrin::test
