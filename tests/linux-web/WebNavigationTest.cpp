#include "WebTest.h"

namespace kestrin::test {
namespace {

class WebNavigation : public WebTest {
  protected:
    using WebTest::WebTest;
};

TEST_F(WebNavigation, TheDelegateDecides) {
    show();
    loadBody("<a id=mail href='mailto:someone@example.org'>mail</a><a id=call href='tel:+123'>call</a>"
             "<a id=blank target=_blank href='/blank'>new</a>");
    const std::string body = server.url("/body");
    EXPECT_EQ(page->events, (std::vector<std::string>{"own " + body, "trust 127.0.0.1", "own " + body,
                                                      "response " + body, "kestrin:ready"}));
    for (const auto& [id, event] : {std::pair{"mail", std::string("own mailto:someone@example.org")},
                                    {"call", std::string("own tel:+123")},
                                    {"blank", "new " + server.url("/blank")}}) {
        page->cancelled = event;
        view->evaluate(std::string("document.getElementById('") + id + "').click()");
        EXPECT_TRUE(waitFor(event)) << id;
        EXPECT_EQ(result("location.pathname"), "/body") << id;
    }
    // An allowed window does not open, as nobody makes it.
    page->cancelled.clear();
    page->events.clear();
    view->evaluate("document.getElementById('blank').click()");
    EXPECT_TRUE(waitFor("new " + server.url("/blank")));
    EXPECT_EQ(result("window.open('/opened') === null"), "true");
    EXPECT_EQ(server.requests("/blank"), 0);
}

TEST_F(WebNavigation, ResponsesAreAskedAbout) {
    show();
    loadBody();
    server.serve("/other", pageWith("other"));
    page->cancelled = "response " + server.url("/other");
    view->evaluate("location.href = '/other'");
    ASSERT_TRUE(waitFor(page->cancelled));
    runFor(0.2);
    EXPECT_EQ(result("location.pathname"), "/body");
    // What WebKit cannot show is neither shown nor put into the downloads folder.
    server.serve("/archive", FaultyServer::reply("PK", "200 OK", "Content-Type: application/zip\r\n"));
    page->cancelled.clear();
    view->evaluate("location.href = '/archive'");
    ASSERT_TRUE(waitFor("response " + server.url("/archive")));
    runFor(0.2);
    EXPECT_EQ(result("location.pathname"), "/body");
}

TEST_F(WebNavigation, WithoutADelegateAllIsAllowed) {
    show();
    loadBody();
    view->setNavigationDelegate({});
    server.serve("/other", pageWith("other"));
    page->events.clear();
    view->evaluate("location.href = '/other'");
    EXPECT_TRUE(waitFor("kestrin:ready"));
    EXPECT_EQ(page->events.size(), 1U);
}

class WebNavigationWithPreferences : public WebNavigation {
  protected:
    static gtk::WebOptions options() {
        gtk::WebOptions result;
        result.featureLevel = 13;
        return result;
    }
    WebNavigationWithPreferences() : WebNavigation(options()) {}
};

TEST_F(WebNavigationWithPreferences, AreAskedFor) {
    show();
    loadBody();
    EXPECT_TRUE(page->has("preferences " + server.url("/body")));
    EXPECT_FALSE(page->has("own " + server.url("/body")));
}

} // namespace
} // namespace kestrin::test
