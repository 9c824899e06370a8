#include "WebTest.h"

namespace kestrin::test {
namespace {

using WebMessages = WebTest;

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

} // namespace
} // namespace kestrin::test
