#include "Fixture.h"

namespace kestrin::content {
namespace {

std::ptrdiff_t openFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

class LifecycleTest : public ServerTest {
  protected:
    std::string errorOf(const Application& wanted, const ServerOptions& with = {}) {
        ContentServer refused(wanted, with);
        const auto error = refused.start();
        EXPECT_FALSE(refused.isRunning());
        EXPECT_EQ(refused.keyString(Form::Direct), "");
        return error.value_or("");
    }
};

TEST_F(LifecycleTest, StartsAndStopsAgainAndAgain) {
    server.emplace(application, options);
    std::ptrdiff_t before = 0;
    for (int round = 0; round < 20; ++round) {
        const auto error = server->start();
        ASSERT_FALSE(error) << *error;
        EXPECT_EQ(Client().get(server->templateUrl(Form::Direct)).status, 200u);
        server->stop();
        EXPECT_EQ(server->port(), 0);
        EXPECT_EQ(server->hostMapEntry(), "");
        if (round == 4)
            before = openFiles();
    }
    EXPECT_LT(openFiles(), before + 10); // GLib's threads may open some of their own, but not one a round
}

TEST_F(LifecycleTest, SaysWhatStandsInTheWay) {
    start();
    EXPECT_EQ(server->start(), "the content server already runs");
    ServerOptions same;
    same.port = server->port();
    EXPECT_TRUE(errorOf(application, same)
                    .starts_with("listening on 127.0.0.1 port " + std::to_string(server->port())));
    struct {
        const char* part;
        void (*spoil)(Application&);
    } const cases[] = {
        {"/nowhere", [](Application& a) { a.page = "/nowhere"; }},
        {"the page", [](Application& a) { a.page = ""; }},
        {"not a UUID", [](Application& a) { a.id = "../etc"; }},
        {"host name", [](Application& a) { a.hostName = "a/b"; }},
    };
    for (const auto& [part, spoil] : cases) {
        Application spoilt = application;
        spoil(spoilt);
        EXPECT_NE(errorOf(spoilt).find(part), std::string::npos) << errorOf(spoilt);
    }
}

} // namespace
} // namespace kestrin::content
