#include "WebTest.h"

#include "linux/toolkit/Capture.h"

namespace kestrin::test {
namespace {

using Pixel = std::array<int, 3>;

class WebLook : public WebTest {
  protected:
    Pixel pixel(int x, int y) {
        platform::Image image;
        gtk::captureWhenPainted(GTK_WIDGET(window), system->mainLoop,
                                [&](const platform::Image& made) { image = made; });
        runUntil([&] { return image.isValid(); });
        if (x >= image.pixelWidth() || y >= image.pixelHeight())
            return {-1, -1, -1};
        const auto at = image.pixels().subspan(static_cast<std::size_t>(y * image.pixelWidth() + x) * 4);
        return {at[0], at[1], at[2]};
    }
    /// Frames take their time from the page's process to the window.
    bool becomes(int x, int y, const Pixel& wanted) {
        const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
        return runUntil([&] { return std::ranges::equal(pixel(x, y), wanted, near); }, 5);
    }
    void makeTransparent() {
        platform::ScrollSettings scroll;
        scroll.opaque = false;
        scroll.background = platform::kClear;
        view->setOpaque(false);
        view->setScroll(scroll);
    }
};

const Pixel kBlue{0, 0, 255}, kRed{255, 0, 0}, kWhitePixel{255, 255, 255};

TEST_F(WebLook, PagesAreAsTransparentAsTheyAreTold) {
    show();
    makeTransparent();
    loadBody("<div style='width:100px;height:100px;background:red'></div>");
    EXPECT_TRUE(becomes(50, 50, kRed));
    EXPECT_TRUE(becomes(150, 50, kBlue));
    view->setOpaque(true);
    EXPECT_TRUE(becomes(150, 50, kWhitePixel));
    view->setOpaque(false);
    EXPECT_TRUE(becomes(150, 50, kBlue));
}

// WebKit leaves trails when it hands frames over in shared memory (WEBKIT_DISABLE_DMABUF_RENDERER).
TEST_F(WebLook, WhatMovesOnATransparentPageLeavesNoTrail) {
    show();
    makeTransparent();
    loadBody("<canvas id='c' width='200' height='100' style='position:fixed;left:0;top:0'></canvas><script>"
             "var g = c.getContext('webgl'); g.enable(g.SCISSOR_TEST); var frames = 0;"
             "(function draw() { frames++;"
             "g.scissor(0, 0, 200, 100); g.clearColor(0, 0, 0, 0); g.clear(g.COLOR_BUFFER_BIT);"
             "g.scissor(frames < 20 ? 20 : 140, 40, 40, 40); g.clearColor(1, 0, 0, 1); "
             "g.clear(g.COLOR_BUFFER_BIT);"
             "if (frames < 60) requestAnimationFrame(draw); })()</script>");
    EXPECT_TRUE(becomes(160, 40, kRed));
    EXPECT_TRUE(becomes(40, 40, kBlue));
}

} // namespace
} // namespace kestrin::test
