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
        Pixel seen{};
        const bool did = runUntil(
            [&] {
                seen = pixel(x, y);
                return std::abs(seen[0] - wanted[0]) + std::abs(seen[1] - wanted[1]) +
                           std::abs(seen[2] - wanted[2]) <=
                       4;
            },
            5);
        EXPECT_TRUE(did) << "it is " << seen[0] << ' ' << seen[1] << ' ' << seen[2];
        return did;
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
    // The view's own background lies below the page, the scroll view's is the page's.
    view->setBackground({0, 1, 0, 1});
    EXPECT_TRUE(becomes(150, 50, {0, 255, 0}));
    platform::ScrollSettings half;
    half.opaque = false;
    half.background = {1, 0, 0, 0.5F};
    view->setScroll(half);
    EXPECT_TRUE(becomes(150, 50, {128, 127, 0}));
    EXPECT_TRUE(becomes(50, 50, kRed));
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

TEST_F(WebLook, AHiddenPageGoesOn) {
    show();
    makeTransparent();
    loadBody("<style>body { background: red }</style><script>var frames = 0;"
             "(function count() { frames++; requestAnimationFrame(count); })()</script>");
    ASSERT_TRUE(becomes(50, 50, kRed));
    view->setHidden(true);
    EXPECT_TRUE(becomes(50, 50, kBlue));
    const int before = std::stoi(result("frames"));
    runFor(0.5);
    EXPECT_GT(std::stoi(result("frames")), before + 5);
    view->setHidden(false);
    EXPECT_TRUE(becomes(50, 50, kRed));
    view->setOpacity(0.5);
    EXPECT_TRUE(becomes(50, 50, {128, 0, 127}));
}

TEST_F(WebLook, NothingIsShownBeforeThePageIsThere) {
    std::string words; // enough of them to be worth a first picture
    for (int i = 0; i < 200; ++i)
        words += "word ";
    const auto pieces = FaultyServer::Reply{{{"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n"
                                              "<body style='background:red'>" +
                                              words},
                                             {pageWith(""), 1}},
                                            FaultyServer::Reply::Then::close};
    server.serve("/slow", pieces);
    show();
    makeTransparent();
    load(server.url("/slow"));
    ASSERT_TRUE(runUntil([&] { return server.requests("/slow") > 0; }));
    runFor(0.6);
    EXPECT_TRUE(becomes(50, 50, kBlue));
    ASSERT_TRUE(waitFor("kestrin:ready"));
    EXPECT_TRUE(becomes(50, 50, kRed));
}

} // namespace
} // namespace kestrin::test
