#include "WebTest.h"

namespace kestrin::test {
namespace {

class WebTrust : public WebTest {
  protected:
    std::vector<std::string> trustEvents() const {
        std::vector<std::string> result;
        for (const std::string& event : page->events)
            if (event.starts_with("trust ") || event == "kestrin:ready")
                result.push_back(event);
        return result;
    }
};

TEST_F(WebTrust, IsAskedOnceALoadBeforeThePageRuns) {
    const std::vector<std::string> once{"trust 127.0.0.1", "kestrin:ready"};
    show();
    loadBody();
    EXPECT_EQ(trustEvents(), once);
    EXPECT_EQ(result("isSecureContext"), "true");
    // The certificate is a good one by now, and the delegate hears of it all the same.
    page->events.clear();
    page->acceptsServers = false;
    loadBody();
    EXPECT_EQ(trustEvents(), once);
}

TEST_F(WebTrust, ARefusedServerIsNotShown) {
    page->acceptsServers = false;
    server.serve("/body", pageWith(""));
    show();
    load(server.url("/body"));
    const auto failed = [&] {
        return std::ranges::any_of(system->kept->lines(), [](const std::string& line) {
            return line.find("The page does not load") != line.npos;
        });
    };
    EXPECT_TRUE(runUntil(failed));
    runFor(0.3);
    EXPECT_EQ(trustEvents(), std::vector<std::string>{"trust 127.0.0.1"});
    EXPECT_EQ(server.requests("/body"), 0);

    view->setNavigationDelegate({});
    load(server.url("/body"));
    runFor(0.5);
    EXPECT_EQ(server.requests("/body"), 0) << "nobody has accepted it";
}

TEST_F(WebTrust, CoversWhatThePageLoadsElsewhere) {
    FaultyServer other;
    other.serve("/lib.js",
                FaultyServer::reply("var lib = 'here'", "200 OK", "Content-Type: text/javascript\r\n"));
    other.serve("/data", FaultyServer::reply("data", "200 OK", "Access-Control-Allow-Origin: *\r\n"));
    show();
    loadBody("<script src='" + other.url("/lib.js", "localhost") + "'></script>");
    EXPECT_TRUE(runUntil([&] { return result("typeof lib") == "string"; }));
    EXPECT_TRUE(page->has("trust localhost"));
    view->evaluate("fetch('" + other.url("/data", "localhost") +
                   "').then(r => r.text()).then(t => webkit.messageHandlers.kestrin.postMessage(t))");
    EXPECT_TRUE(waitFor("kestrin:data"));
}

} // namespace
} // namespace kestrin::test
