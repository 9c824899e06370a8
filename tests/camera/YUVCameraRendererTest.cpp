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
    std::shared_ptr<YUVCameraRenderer> makeRenderer() {
        return YUVCameraRenderer::initWithDevice(view->device(), view);
    }
    static PixelBufferRef picture(int planes = 2) {
        return std::make_shared<FakePixelBuffer>(640, 480, planes);
    }
    /// Milliseconds that one update takes.
    static double timeOf(YUVCameraRenderer& renderer) {
        const auto began = std::chrono::steady_clock::now();
        renderer.update();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - began).count();
    }

    FakeGpuDevice& gpu = *system->graphics.device;
    std::shared_ptr<RenderView> view = makeView<RenderView>();
    FakeRenderPeer& peer = *system->graphics.newest;
};

TEST_F(YUVCameraRendererTest, PreparesThePipeline) {
    const auto renderer = makeRenderer();
    EXPECT_EQ(peer.settings.depthStencilFormat, GpuFormat::depth32FloatStencil8);
    EXPECT_EQ(gpu.libraryName, "default.metallib");
    EXPECT_EQ(gpu.pipeline.vertexFunction, "capturedImageVertexTransform");
    EXPECT_EQ(gpu.pipeline.fragmentFunction, "capturedImageFragmentShader");
    EXPECT_EQ(gpu.pipeline.depthFormat, GpuFormat::depth32FloatStencil8);
    EXPECT_EQ(gpu.pipeline.stencilFormat, GpuFormat::depth32FloatStencil8);
    ASSERT_EQ(gpu.pipeline.attributes.size(), 2U);
    EXPECT_EQ(gpu.pipeline.attributes[1].offset, 8);
    EXPECT_EQ(gpu.pipeline.vertexStride, 16);
    EXPECT_EQ(gpu.buffer->label, "ImagePlaneVertexBuffer");
    EXPECT_EQ(gpu.buffer->values, (std::vector<float>{-1, -1, 0, 1, 1, -1, 1, 1, -1, 1, 0, 0, 1, 1, 1, 0}));
    EXPECT_TRUE(takeLog().empty());
}

TEST_F(YUVCameraRendererTest, DrawsAPictureAsOneQuad) {
    const auto renderer = makeRenderer();
    renderer->renderCameraTex(picture());
    EXPECT_TRUE(renderer->isWaiting());
    renderer->update();
    EXPECT_FALSE(renderer->isWaiting());
    EXPECT_EQ(gpu.takeJournal(),
              (std::vector<std::string>{"makeCommandBuffer", "label MyCommand", "makeEncoder",
                                        "label MyRenderEncoder", "push DrawCapturedImage", "cull none",
                                        "pipeline", "depth", "vertices 0", "texture 1", "texture 2",
                                        "strip 0 4", "pop", "end", "present", "commit"}));
    EXPECT_EQ(gpu.drawn[1]->format, GpuFormat::r8Unorm);
    EXPECT_EQ(gpu.drawn[1]->width, 640);
    EXPECT_EQ(gpu.drawn[2]->format, GpuFormat::rg8Unorm);
    EXPECT_EQ(gpu.drawn[2]->plane, 1);
    EXPECT_EQ(gpu.drawn[2]->height, 240);
}

TEST_F(YUVCameraRendererTest, PresentsWithoutDrawingWhatItDoesNotHave) {
    const auto renderer = makeRenderer();
    const auto expectOnly = [&](const std::vector<std::string>& lines) {
        renderer->update();
        EXPECT_EQ(gpu.takeJournal(), lines);
    };
    const std::vector<std::string> emptyPass{
        "makeCommandBuffer", "label MyCommand", "makeEncoder", "label MyRenderEncoder", "end",
        "present",           "commit"};
    expectOnly(emptyPass); // no picture yet
    renderer->renderCameraTex(picture(1));
    renderer->renderCameraTex(nullptr);
    EXPECT_FALSE(renderer->isWaiting());
    gpu.texturesFail = true;
    renderer->renderCameraTex(picture());
    expectOnly(emptyPass);
    peer.renderPass = false;
    expectOnly({"makeCommandBuffer", "label MyCommand", "present", "commit"});
}

TEST_F(YUVCameraRendererTest, DropsTheSecondOfTwoPictures) {
    const auto renderer = makeRenderer();
    const auto first = picture(), second = picture(), third = picture();
    renderer->renderCameraTex(first);
    renderer->renderCameraTex(second);
    renderer->update();
    EXPECT_EQ(gpu.drawn[1]->buffer, first);
    renderer->update(); // nothing new: the same again
    EXPECT_EQ(gpu.drawn[1]->buffer, first);
    renderer->renderCameraTex(third);
    renderer->update();
    EXPECT_EQ(gpu.drawn[1]->buffer, third);
}

TEST_F(YUVCameraRendererTest, KeepsAPictureUntilTheGpuIsDone) {
    gpu.finishesAtOnce = false;
    const auto renderer = makeRenderer();
    auto first = picture();
    const std::weak_ptr<const PixelBuffer> watched = first;
    renderer->renderCameraTex(std::exchange(first, nullptr));
    renderer->update();
    renderer->renderCameraTex(picture());
    renderer->update();
    gpu.drawn.assign(4, nullptr);
    EXPECT_FALSE(watched.expired());
    gpu.finish();
    EXPECT_TRUE(watched.expired());
}

TEST_F(YUVCameraRendererTest, HasThreeFramesInFlight) {
    gpu.finishesAtOnce = false;
    const auto renderer = makeRenderer();
    for (int i = 0; i < 3; ++i)
        renderer->update();
    gpu.takeJournal();
    std::thread drawing([&] { renderer->update(); });
    gpu.finish(); // without it the fourth would never return
    drawing.join();
    EXPECT_EQ(std::ranges::count(gpu.takeJournal(), "commit"), 1);
}

TEST_F(YUVCameraRendererTest, StopEndsADrawThatWaits) {
    gpu.finishesAtOnce = false;
    const auto renderer = makeRenderer();
    for (int i = 0; i < 3; ++i)
        renderer->update();
    gpu.takeJournal();
    std::thread drawing([&] { renderer->update(); });
    renderer->stop();
    drawing.join();
    renderer->update();
    EXPECT_TRUE(gpu.takeJournal().empty());
}

TEST_F(YUVCameraRendererTest, TurnsTheTextureCoordinatesOnceAChange) {
    const auto renderer = makeRenderer();
    renderer->updateViewportResized({480, 640}, {0, -1, 1, 0, 0, 1});
    renderer->update();
    EXPECT_EQ(gpu.buffer->values, (std::vector<float>{-1, -1, 1, 1, 1, -1, 1, 0, -1, 1, 0, 1, 1, 1, 0, 0}));
    gpu.buffer->values.clear();
    renderer->update();
    EXPECT_TRUE(gpu.buffer->values.empty());
    renderer->updateViewportResized({480, 640}, {0.5, 0, 0, 1, 0.25, 0});
    renderer->update();
    EXPECT_EQ(gpu.buffer->values,
              (std::vector<float>{-1, -1, 0.25, 1, 1, -1, 0.75, 1, -1, 1, 0.25, 0, 1, 1, 0.75, 0}));
}

TEST_F(YUVCameraRendererTest, PacesWhileLocked) {
    const auto renderer = makeRenderer();
    constexpr int kTries = 5;
    // Signals that come while unlocked are kept.
    for (int i = 0; i < kTries; ++i)
        renderer->signal();
    EXPECT_LT(timeOf(*renderer), 12);
    renderer->lockSignal();
    double quickest = 1000;
    for (int i = 0; i < kTries; ++i) {
        const double taken = timeOf(*renderer);
        EXPECT_GE(taken, 12);
        quickest = std::min(quickest, taken);
    }
    EXPECT_LT(quickest, 30) << "a signal lets a draw through at once";
    EXPECT_GE(timeOf(*renderer), 30) << "no signal is left";
    renderer->unlockSignal();
    EXPECT_LT(std::min(timeOf(*renderer), timeOf(*renderer)), 12);
}

TEST_F(YUVCameraRendererTest, SaysWhyItCannotDraw) {
    gpu.libraryError = "no such file";
    const auto bare = makeRenderer();
    bare->renderCameraTex(picture());
    for (int i = 0; i < 5; ++i)
        bare->update(); // never blocks
    EXPECT_TRUE(gpu.takeJournal().empty());

    gpu.libraryError.clear();
    gpu.pipelineError = "bad shader";
    const auto unshaded = makeRenderer();
    unshaded->renderCameraTex(picture());
    unshaded->update();
    EXPECT_EQ(std::ranges::count(gpu.takeJournal(), "strip 0 4"), 0);
    EXPECT_EQ(takeLog(), (std::vector<std::string>{
                             "Error Loading Default Shaders = no such file",
                             "Failed to created captured image pipeline state, error bad shader"}));
}

} // namespace kestrin
