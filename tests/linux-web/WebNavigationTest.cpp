#include "WebTest.h"

namespace kestrin::test {
namespace {

using WebNavigation = WebTest;

TEST_F(WebNavigation, TheDelegateDecides) {
    show();
    loadBody("<a id=mail href='mailto:someone@example.org'>mail</a>"
             "<a id=blank target=_blank href='/blank'>new</a>");
    const std::string body = server.url("/body"), blank = "new " + server.url("/blank");
    EXPECT_EQ(page->events, (std::vector<std::string>{"own " + body, "trust 127.0.0.1", "own " + body,
                                                      "response " + body, "kestrin:ready"}));
    for (const auto& [id, event] :
         {std::pair("mail", std::string("own mailto:someone@example.org")), std::pair("blank", blank)}) {
        page->cancelled = event;
        view->evaluate(std::string("document.getElementById('") + id + "').click()");
        EXPECT_TRUE(waitFor(event)) << id;
        EXPECT_EQ(result("location.pathname"), "/body") << id;
    }
    // An allowed window does not open either, as nobody makes it.
    page->cancelled.clear();
    EXPECT_EQ(result("window.open('/opened') === null"), "true");
}

TEST_F(WebNavigation, WhatCannotBeShownLeavesThePage) {
    show();
    loadBody();
    server.serve("/archive", FaultyServer::reply("PK", "200 OK", "Content-Type: application/zip\r\n"));
    view->evaluate("location.href = '/archive'");
    ASSERT_TRUE(waitFor("response " + server.url("/archive")));
    runFor(0.2);
    EXPECT_EQ(result("location.pathname"), "/body");
}

TEST_F(WebNavigation, TrustIsAskedAtEveryLoadAndStrictWithoutADelegate) {
    page->acceptsServers = false;
    server.serve("/body", pageWith(""));
    show();
    load("/body");
    EXPECT_TRUE(waitForLog("The page does not load"));
    EXPECT_TRUE(page->has("trust 127.0.0.1"));
    view->setNavigationDelegate({});
    load("/body");
    runFor(0.5);
    EXPECT_EQ(server.requests("/body"), 0) << "nobody has accepted it";
    view->setNavigationDelegate(page);
    page->acceptsServers = true;
    for (int i = 0; i < 2; ++i) {
        page->events.clear();
        loadBody();
        EXPECT_EQ(std::ranges::count(page->events, "trust 127.0.0.1"), 1);
    }
}

TEST_F(WebNavigation, SilenceEndsALoad) {
    using Reply = FaultyServer::Reply;
    const std::string half =
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 9999\r\n\r\n<p>half";
    server.serve("/mute", Reply{{}, Reply::Then::hang});
    server.serve("/stalls", Reply{{{half}}, Reply::Then::hang});
    show();
    for (const char* path : {"/mute", "/stalls"}) {
        load(path, 1);
        EXPECT_TRUE(waitForLog("silent, loading is given up: " + server.url(path)));
    }
    loadBody();
    EXPECT_EQ(result("location.pathname"), "/body");
}

} // namespace
} // namespace kestrin::test
