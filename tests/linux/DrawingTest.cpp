#include "linux/CameraLayer.h"
#include "linux/NvPicture.h"
#include "linux/ToolkitTest.h"

#include <thread>

namespace kestrin::test {
namespace {

using platform::makeView;
using platform::PixelBufferRef;
using platform::RenderView;
using platform::View;

PixelBufferRef solid(const Rgb& color) {
    return std::make_shared<NvPicture>(64, 48, 0, [&](int, int) { return color; });
}

class DrawingTest : public ToolkitTest {
  protected:
    DrawingTest() {
        root->addSubview(camera);
        camera->setFrame({{0, 0}, {200, 120}});
        camera->setDelegate(layer);
    }

    void rate(int framesPerSecond) {
        platform::RenderViewSettings settings = camera->settings();
        settings.preferredFramesPerSecond = framesPerSecond;
        camera->setSettings(settings);
    }

    /// Shows the picture and waits until it is on the screen.
    void present(const PixelBufferRef& picture) {
        layer->show(picture);
        const int drawn = layer->draws;
        EXPECT_TRUE(runUntil([&] { return layer->draws > drawn + 1; }));
        settle();
    }

    std::shared_ptr<View> root = makeView<View>();
    std::shared_ptr<RenderView> camera = makeView<RenderView>();
    std::shared_ptr<CameraLayer> layer = std::make_shared<CameraLayer>(*camera);
};

TEST_F(DrawingTest, ColoursAreThoseOfFullRangeBt601) {
    show(*root);
    EXPECT_PIXEL(pixel(100, 60), {0, 0, 0}); // no picture yet
    for (const Rgb& color : {Rgb{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}, {10, 200, 90}}) {
        present(solid(color));
        EXPECT_PIXEL(pixel(100, 60), {int(color.red), int(color.green), int(color.blue)});
        EXPECT_PIXEL(pixel(0, 0), {int(color.red), int(color.green), int(color.blue)});
        EXPECT_PIXEL(pixel(199, 119), {int(color.red), int(color.green), int(color.blue)});
    }
    EXPECT_EQ(log(), std::vector<std::string>());
}

// Red and green above, blue and white below; rows with padding, also of an odd number of bytes.
TEST_F(DrawingTest, ThePictureIsNeitherTurnedNorMirrored) {
    show(*root);
    for (const int padding : {0, 6, 64, 7}) {
        present(std::make_shared<NvPicture>(64, 48, padding, [](int x, int y) {
            const bool right = x >= 16, low = y >= 12;
            return right ? (low ? Rgb{255, 255, 255} : Rgb{0, 255, 0})
                         : (low ? Rgb{0, 0, 255} : Rgb{255, 0, 0});
        }));
        EXPECT_PIXEL(pixel(20, 12), {255, 0, 0});
        EXPECT_PIXEL(pixel(180, 12), {0, 255, 0});
        EXPECT_PIXEL(pixel(20, 108), {0, 0, 255});
        EXPECT_PIXEL(pixel(180, 108), {255, 255, 255});
    }
}

// Also in the middle of a frame, and without waiting for its end.
TEST_F(DrawingTest, TheNewestPictureCanBeReadBack) {
    struct Gate {
        std::atomic<bool> isShut = false;
        std::atomic<int> waits = 0;
    };
    const auto gate = std::make_shared<Gate>();
    layer->beforeDraw = [gate] {
        while (gate->isShut && ++gate->waits < 500)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    };
    EXPECT_FALSE(camera->renderPeer().newestPicture().isValid());
    show(*root);
    present(std::make_shared<NvPicture>(64, 48, 0, [](int x, int y) {
        return y >= 12 ? Rgb{0, 0, 255} : x >= 16 ? Rgb{0, 255, 0} : Rgb{255, 0, 0};
    }));
    gate->isShut = true;
    EXPECT_TRUE(runUntil([&] { return gate->waits > 0; }));
    const platform::Image picture = camera->renderPeer().newestPicture();
    EXPECT_LT(gate->waits, 500) << "it waited for the end of the frame";
    gate->isShut = false;
    ASSERT_EQ(picture.pixelWidth(), 200 * scale());
    const auto at = [&](double x, double y) {
        const auto column = std::size_t(x * picture.pixelWidth()),
                   row = std::size_t(y * picture.pixelHeight());
        const auto* p = &picture.pixels()[(row * std::size_t(picture.pixelWidth()) + column) * 4];
        return Pixel{p[0], p[1], p[2]};
    };
    EXPECT_PIXEL(at(0.1, 0.1), {255, 0, 0});
    EXPECT_PIXEL(at(0.9, 0.1), {0, 255, 0});
    EXPECT_PIXEL(at(0.1, 0.9), {0, 0, 255});
}

TEST_F(DrawingTest, TheSizeIsToldInPixelsAndDrawnIn) {
    show(*root);
    const double s = scale();
    EXPECT_EQ(layer->sizes, (std::vector<platform::Size>{{200 * s, 120 * s}}));
    camera->setFrame({{0, 0}, {100, 100}});
    settle();
    camera->setFrame({{10, 0}, {100, 100}}); // moved, not resized
    settle();
    EXPECT_EQ(layer->sizes, (std::vector<platform::Size>{{200 * s, 120 * s}, {100 * s, 100 * s}}));
    present(solid({0, 255, 0}));
    EXPECT_PIXEL(pixel(109, 99), {0, 255, 0});
}

TEST_F(DrawingTest, ItDrawsAtTheWantedRateAndSleepsWhileUnseen) {
    rate(50);
    show(*root);
    const auto drawnIn = [&](double seconds) {
        const int before = layer->draws;
        runUntil([] { return false; }, seconds);
        return layer->draws - before;
    };
    const int shown = drawnIn(1);
    EXPECT_GE(shown, 30); // a busy machine may lose some, none may be too many
    EXPECT_LE(shown, 51);

    camera->setHidden(true);
    settle();
    EXPECT_EQ(drawnIn(0.2), 0);
    camera->setHidden(false);
    settle();
    EXPECT_GT(drawnIn(0.2), 3);
}

// The pace of a delegate that waits longer than a period is its own, not rounded up to the next period.
TEST_F(DrawingTest, ASlowDelegateSetsThePace) {
    rate(45);
    layer->beforeDraw = [] { std::this_thread::sleep_for(std::chrono::milliseconds(30)); };
    show(*root);
    const int before = layer->draws;
    runUntil([] { return false; }, 1);
    EXPECT_GE(layer->draws - before, 24); // every second period would be 22
}

// An application ends by closing its window; what its objects need may be gone right after.
TEST_F(DrawingTest, NothingIsHeldByTheThreadOnceTheWindowIsGone) {
    for (int i = 0; i < 5; ++i) {
        layer = std::make_shared<CameraLayer>(*camera);
        layer->beforeDraw = [] { std::this_thread::sleep_for(std::chrono::milliseconds(50)); };
        camera->setDelegate(layer);
        show(*root);
        runUntil([&] { return layer->draws > 0; });
        const std::weak_ptr<CameraLayer> weak = layer;
        layer.reset();
        gtk_window_destroy(window);
        EXPECT_TRUE(weak.expired());
    }
}

// The view goes while its thread is anywhere: asleep, in the delegate, in GL.
TEST_F(DrawingTest, FiftyRenderViewsComeAndGo) {
    show(*root);
    for (int i = 0; i < 50; ++i) {
        auto view = makeView<RenderView>();
        auto own = std::make_shared<CameraLayer>(*view);
        own->show(solid({255, double(i), 0}));
        view->setDelegate(own);
        view->setFrame({{0, 0}, {50, 50}});
        root->addSubview(view);
        EXPECT_TRUE(i % 5 == 4 || runUntil([&] { return own->draws > i % 3; }));
        if (i % 2)
            own.reset();
        view->removeFromSuperview();
        if (i % 3 == 0)
            settle();
    }
    EXPECT_EQ(log(), std::vector<std::string>());
}

} // namespace
} // namespace kestrin::test
