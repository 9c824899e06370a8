#include "WebTest.h"

namespace kestrin::test {
namespace {

class WebMessages : public WebTest {};

TEST_F(WebMessages, ArriveByLength) {
    show();
    loadBody();
    page->events.clear();
    view->evaluate("var post = (text, to = 'kestrin') => webkit.messageHandlers[to].postMessage(text);"
                   "post(''); post('a\\0b\\0'); post('Gr\\u00fc\\u00df \\u{1F600}', 'kestrinjs');"
                   "post(7); post(null); post(['list']); post({});"
                   "post('x'.repeat(8 << 20)); post('end');");
    ASSERT_TRUE(waitFor("kestrin:end"));
    const std::vector<std::string> expected{"kestrin:", std::string("kestrin:a\0b\0", 12),
                                            "kestrinjs:Grüß \xf0\x9f\x98\x80",
                                            "kestrin:" + std::string(8 << 20, 'x'), "kestrin:end"};
    ASSERT_EQ(page->events.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_TRUE(page->events[i] == expected[i]) << i << ": " << page->events[i].substr(0, 40);
}

TEST_F(WebMessages, BrokenTextIsHarmless) {
    show();
    loadBody();
    page->events.clear();
    view->evaluate("webkit.messageHandlers.kestrin.postMessage('half \\ud83d surrogate')");
    view->evaluate("not a script at all (");
    view->evaluate("throw new Error('on purpose')");
    view->evaluate("'\xff\xfe not UTF-8'");
    view->evaluate("");
    view->evaluate(std::string_view("webkit.messageHandlers.kestrin.postMessage('nul:\0')", 51));
    ASSERT_TRUE(waitFor(std::string("kestrin:nul:\0", 13)));
    EXPECT_EQ(page->events.size(), 2U);
}

TEST_F(WebMessages, EvaluationsKeepTheirOrder) {
    show();
    loadBody("<script>var count = 0, post = t => webkit.messageHandlers.kestrin.postMessage(t);</script>");
    page->events.clear();
    constexpr int kTimes = 2000;
    for (int i = 0; i < kTimes; ++i)
        view->evaluate("post('" + std::to_string(i) + " ' + count++);");
    ASSERT_TRUE(runUntil([&] { return page->events.size() == kTimes; }));
    for (int i = 0; i < kTimes; ++i) {
        const std::string number = std::to_string(i);
        ASSERT_EQ(page->events[static_cast<std::size_t>(i)], "kestrin:" + number + " " + number);
    }
}

TEST_F(WebMessages, LargeScriptsArriveWhole) {
    show();
    loadBody();
    const std::string text(8 << 20, 'y');
    EXPECT_EQ(result("'" + text + "'.length"), std::to_string(text.size()));
}

TEST_F(WebMessages, ReachNobodyWhenTheHandlerIsGone) {
    auto fleeting = std::make_shared<Page>();
    auto other = configuration();
    other.scriptMessageHandlers["fleeting"] = fleeting;
    show(other);
    loadBody();
    fleeting.reset();
    view->evaluate("webkit.messageHandlers.fleeting.postMessage('lost')");
    EXPECT_EQ(result("1 + 1"), "2");
}

} // namespace
} // namespace kestrin::test
