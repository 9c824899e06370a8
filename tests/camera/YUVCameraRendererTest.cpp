#include "camera/YUVCameraRenderer.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

struct YUVCameraRendererTest : PlatformTest {
    static PixelBufferRef picture(int planes = 2) {
        return std::make_shared<FakePixelBuffer>(640, 480, planes);
    }
    /// Milliseconds that the quickest of some updates takes.
    static double timeOf(YUVCameraRenderer& renderer, int updates) {
        double quickest = 1000;
        for (int i = 0; i < updates; ++i) {
            const auto began = std::chrono::steady_clock::now();
            renderer.update();
            const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - began;
            quickest = std::min(quickest, taken.count());
        }
        return quickest;
    }

    FakeGpuDevice& gpu = *system->graphics.device;
    std::shared_ptr<RenderView> view = makeView<RenderView>();
    std::shared_ptr<YUVCameraRenderer> renderer = YUVCameraRenderer::initWithDevice(view->device(), view);
};

TEST_F(YUVCameraRendererTest, DrawsAPictureAsOneQuad) {
    renderer->renderCameraTex(picture());
    renderer->update();
    EXPECT_EQ(gpu.takeJournal(),
              (std::vector<std::string>{"makeCommandBuffer", "label MyCommand", "makeEncoder",
                                        "label MyRenderEncoder", "push DrawCapturedImage", "cull none",
                                        "pipeline", "depth", "vertices 0", "texture 1", "texture 2",
                                        "strip 0 4", "pop", "end", "present", "commit"}));
    EXPECT_EQ(gpu.drawn[2]->format, GpuFormat::rg8Unorm);
    EXPECT_EQ(gpu.buffer->values, (std::vector<float>{-1, -1, 0, 1, 1, -1, 1, 1, -1, 1, 0, 0, 1, 1, 1, 0}));
}

TEST_F(YUVCameraRendererTest, PresentsWithoutDrawingWhatItDoesNotHave) {
    renderer->renderCameraTex(picture(1));
    renderer->renderCameraTex(nullptr);
    EXPECT_FALSE(renderer->isWaiting());
    gpu.texturesFail = true;
    renderer->renderCameraTex(picture());
    renderer->update();
    EXPECT_EQ(std::ranges::count(gpu.takeJournal(), "strip 0 4"), 0);
}

TEST_F(YUVCameraRendererTest, KeepsTheFirstOfTwoPicturesUntilTheGpuIsDone) {
    gpu.finishesAtOnce = false;
    auto first = picture();
    const std::weak_ptr<const PixelBuffer> watched = first;
    renderer->renderCameraTex(first);
    renderer->renderCameraTex(picture());
    renderer->update();
    EXPECT_EQ(gpu.drawn[1]->buffer, first);
    first.reset();
    renderer->renderCameraTex(picture());
    renderer->update();
    gpu.drawn.assign(4, nullptr);
    EXPECT_FALSE(watched.expired());
    gpu.finish();
    EXPECT_TRUE(watched.expired());
}

TEST_F(YUVCameraRendererTest, HasThreeFramesInFlight) {
    gpu.finishesAtOnce = false;
    const auto fourth = [&](const auto& release) {
        gpu.finish();
        for (int i = 0; i < 3; ++i)
            renderer->update();
        gpu.takeJournal();
        std::thread drawing([&] { renderer->update(); });
        release(); // without it the fourth would never return
        drawing.join();
        return std::ranges::count(gpu.takeJournal(), "commit");
    };
    EXPECT_EQ(fourth([&] { gpu.finish(); }), 1);
    EXPECT_EQ(fourth([&] { renderer->stop(); }), 0);
}

TEST_F(YUVCameraRendererTest, PacesWhileLocked) {
    for (int i = 0; i < 2; ++i)
        renderer->signal(); // kept while unlocked
    EXPECT_LT(timeOf(*renderer, 2), 12);
    renderer->lockSignal();
    const double paced = timeOf(*renderer, 2);
    EXPECT_GE(paced, 12);
    EXPECT_LT(paced, 30) << "a signal lets a draw through at once";
    EXPECT_GE(timeOf(*renderer, 1), 30) << "no signal is left";
    renderer->unlockSignal();
    EXPECT_LT(timeOf(*renderer, 2), 12);
}

TEST_F(YUVCameraRendererTest, SaysWhyItCannotDraw) {
    gpu.libraryError = "no such file";
    const auto bare = YUVCameraRenderer::initWithDevice(view->device(), view);
    for (int i = 0; i < 5; ++i)
        bare->update(); // never blocks
    gpu.libraryError.clear();
    gpu.pipelineError = "bad shader";
    YUVCameraRenderer::initWithDevice(view->device(), view)->update();
    EXPECT_EQ(takeLog(), (std::vector<std::string>{
                             "Error Loading Default Shaders = no such file",
                             "Failed to created captured image pipeline state, error bad shader"}));
}

} // namespace kestrin
