#include "WebTest.h"

namespace kestrin::test {
namespace {

using WebPage = WebTest;

TEST_F(WebPage, MessagesArriveByLength) {
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

// WebKit leaves trails when it hands frames over in shared memory (WEBKIT_DISABLE_DMABUF_RENDERER).
TEST_F(WebPage, WhatMovesOnATransparentPageLeavesNoTrail) {
    show();
    platform::ScrollSettings scroll;
    scroll.opaque = false;
    scroll.background = platform::kClear;
    view->setOpaque(false);
    view->setScroll(scroll);
    loadBody("<canvas id='c' width='200' height='100' style='position:fixed;left:0;top:0'></canvas><script>"
             "var g = c.getContext('webgl'); g.enable(g.SCISSOR_TEST); var frames = 0;"
             "(function draw() { frames++;"
             "g.scissor(0, 0, 200, 100); g.clearColor(0, 0, 0, 0); g.clear(g.COLOR_BUFFER_BIT);"
             "g.scissor(frames < 20 ? 20 : 140, 40, 40, 40); g.clearColor(1, 0, 0, 1); "
             "g.clear(g.COLOR_BUFFER_BIT);"
             "if (frames < 60) requestAnimationFrame(draw); })()</script>");
    // Frames take their time from the page's process to the window.
    EXPECT_TRUE(runUntil([&] { return pixel(160, 40) == Pixel{255, 0, 0}; }));
    EXPECT_TRUE(runUntil([&] { return pixel(40, 40) == Pixel{0, 0, 255}; }));
}

} // namespace
} // namespace kestrin::test
