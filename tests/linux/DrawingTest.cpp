#include "camera/YUVCameraRenderer.h"
#include "linux/ToolkitTest.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <thread>

namespace kestrin::test {
namespace {

using namespace std::chrono_literals;
using platform::makeView;
using platform::RenderView;
using platform::View;
using Clock = std::chrono::steady_clock;

/// The upper left, upper right, lower left and lower right quarter of a picture.
using Colors = std::array<Pixel, 4>;
constexpr Pixel kReds{255, 0, 0}, kGreens{0, 255, 0}, kBlues{0, 0, 255}, kWhites{255, 255, 255};
constexpr Colors kQuarters{kReds, kGreens, kBlues, kWhites};

/// A picture in memory as cameras give it, full-range BT.601, its rows longer than they need be.
class Quarters final : public platform::PixelBuffer {
  public:
    Quarters(const Colors& colors, int padding) : m_stride(kWidth + padding) {
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                put(x, y, colors[std::size_t(y * 2 / kHeight * 2 + x * 2 / kWidth)]);
    }
    int width() const override { return kWidth; }
    int height() const override { return kHeight; }
    int planeCount() const override { return 2; }
    platform::PixelPlane plane(int index) const override {
        const int part = index + 1;
        return {m_planes[index].data(), kWidth / part, kHeight / part, m_stride};
    }

  private:
    static constexpr int kWidth = 64, kHeight = 48;

    void put(int x, int y, const Pixel& c) {
        const auto byte = [](double value) { return std::uint8_t(std::lround(std::fmin(value, 255))); };
        const double luma = 0.299 * c.red + 0.587 * c.green + 0.114 * c.blue;
        const auto chroma = std::size_t(y / 2 * m_stride + x / 2 * 2);
        m_planes[0][std::size_t(y * m_stride + x)] = byte(luma);
        m_planes[1][chroma] = byte(128 + (c.blue - luma) / 1.772);
        m_planes[1][chroma + 1] = byte(128 + (c.red - luma) / 1.402);
    }

    const int m_stride;
    std::vector<std::uint8_t> m_planes[2] = {std::vector<std::uint8_t>(std::size_t(m_stride * kHeight)),
                                             std::vector<std::uint8_t>(std::size_t(m_stride* kHeight / 2))};
};

/// Has the renderer of camera pictures draw, and looks on.
struct Layer : platform::RenderViewDelegate {
    explicit Layer(const std::shared_ptr<RenderView>& view)
        : renderer(YUVCameraRenderer::initWithDevice(view->device(), view)) {}
    void show(const Colors& colors, int padding = 0) const {
        renderer->renderCameraTex(std::make_shared<Quarters>(colors, padding));
    }
    void drawInView(RenderView&) override {
        const auto before = std::exchange(began, Clock::now());
        shortest = std::min(shortest.load(), std::chrono::duration<double>(began - before).count());
        if (beforeDraw)
            beforeDraw();
        renderer->update();
        ++draws;
    }
    void drawableSizeWillChange(RenderView&, const platform::Size& size) override { sizes.push_back(size); }

    const std::shared_ptr<YUVCameraRenderer> renderer;
    std::function<void()> beforeDraw;
    std::atomic<int> draws = 0;
    std::atomic<double> shortest = 1; ///< seconds from one draw to the next
    Clock::time_point began;
    std::vector<platform::Size> sizes;
};

} // namespace

struct DrawingTest : ToolkitTest {
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
    void waitForDraws(int count) {
        const int wanted = layer->draws + count;
        EXPECT_TRUE(runUntil([&] { return layer->draws >= wanted; }));
    }
    /// Shows the picture and waits until it is on the screen.
    void present(const Colors& colors, int padding = 0) {
        layer->show(colors, padding);
        waitForDraws(3); // the second took it; before the third it was published
        settle();
    }

    std::shared_ptr<View> root = makeView<View>();
    std::shared_ptr<RenderView> camera = makeView<RenderView>();
    std::shared_ptr<Layer> layer = std::make_shared<Layer>(camera);
};

// Neither turned nor mirrored, up to the edges, also with rows that end in the middle of a sample.
TEST_F(DrawingTest, ColoursAreThoseOfFullRangeBt601) {
    show(*root);
    waitForDraws(2);
    EXPECT_PIXEL(pixel(100, 60), {0, 0, 0}); // no picture yet
    std::array<Pixel, 5> palette{kReds, kGreens, kBlues, kWhites, {10, 200, 90}};
    for (const int padding : {0, 6, 64, 7}) {
        std::ranges::rotate(palette, palette.begin() + 1);
        const Colors colors{palette[0], palette[1], palette[2], palette[3]};
        present(colors, padding);
        for (int quarter = 0; quarter < 4; ++quarter)
            EXPECT_EQ(pixel(quarter % 2 * 199, quarter / 2 * 119), colors[quarter]);
    }
    EXPECT_EQ(system->kept->take(), std::vector<std::string>());
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
            std::this_thread::sleep_for(10ms);
    };
    EXPECT_FALSE(camera->renderPeer().newestPicture().isValid());
    show(*root);
    present(kQuarters);
    gate->isShut = true;
    EXPECT_TRUE(runUntil([&] { return gate->waits > 0; }));
    const platform::Image picture = camera->renderPeer().newestPicture();
    EXPECT_LT(gate->waits, 500) << "it waited for the end of the frame";
    gate->isShut = false;
    ASSERT_EQ(picture.pixelWidth(), 200 * scale());
    EXPECT_EQ((Pixel{picture.pixels()[0], picture.pixels()[1], picture.pixels()[2]}), kQuarters[0]);
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
    present({kGreens, kGreens, kGreens, kGreens});
    EXPECT_PIXEL(pixel(109, 99), {0, 255, 0});
}

// How often is told by the shortest time between two draws: a busy machine makes others longer.
TEST_F(DrawingTest, ItDrawsAtTheWantedRate) {
    rate(50);
    show(*root);
    const auto began = Clock::now();
    waitForDraws(40);
    EXPECT_GT(Clock::now() - began, 700ms) << "never too often";
    EXPECT_LT(layer->shortest, 0.03);
}

// The pace of a delegate that waits longer than a period is its own, not rounded up to the next period.
TEST_F(DrawingTest, ASlowDelegateSetsThePace) {
    rate(5);
    layer->beforeDraw = [] { std::this_thread::sleep_for(220ms); };
    show(*root);
    waitForDraws(5);
    EXPECT_LT(layer->shortest, 0.32); // every second period would be 0.4
}

// An application ends by closing its window; what its objects need may be gone right after.
TEST_F(DrawingTest, NothingIsHeldByTheThreadOnceTheWindowIsGone) {
    for (int i = 0; i < 5; ++i) {
        layer = std::make_shared<Layer>(camera);
        layer->beforeDraw = [] { std::this_thread::sleep_for(50ms); };
        camera->setDelegate(layer);
        show(*root);
        waitForDraws(1);
        const std::weak_ptr<Layer> weak = layer;
        layer.reset();
        gtk_window_destroy(window);
        EXPECT_TRUE(weak.expired());
    }
}

} // namespace kestrin::test
