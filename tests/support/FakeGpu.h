#pragma once

#include "platform/Gpu.h"
#include "support/RecordedView.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kestrin::test {

struct FakeGpuBuffer : platform::GpuBuffer {
    void write(std::span<const float> v) override { values.assign(v.begin(), v.end()); }
    void setLabel(const std::string&) override {}
    std::vector<float> values;
};

struct FakeGpuTexture : platform::GpuTexture {
    FakeGpuTexture(platform::PixelBufferRef b, platform::GpuFormat f) : buffer(std::move(b)), format(f) {}
    const platform::PixelBufferRef buffer;
    const platform::GpuFormat format;
};

/// Makes recording things, and fails where the test says. Everything drawn is written to `journal`, a line a
/// call: "makeCommandBuffer", "label NAME", "makeEncoder", "push NAME", "pop", "cull none", "pipeline",
/// "depth", "vertices INDEX", "texture INDEX", "strip FIRST COUNT", "end", "present", "commit".
class FakeGpuDevice : public platform::GpuDevice,
                      public platform::GpuTextureCache,
                      public platform::GpuCommandQueue,
                      public std::enable_shared_from_this<FakeGpuDevice> {
  public:
    std::shared_ptr<platform::GpuBuffer> makeBuffer(std::span<const float> values) override;
    platform::GpuResult<platform::GpuLibrary> makeLibrary(const std::string& name,
                                                          const std::string& type) override;
    platform::GpuResult<platform::GpuPipeline>
    makePipeline(const platform::GpuPipelineDescriptor& descriptor) override;
    std::shared_ptr<platform::GpuDepthState> makeDepthState(const platform::GpuDepthDescriptor&) override {
        return std::make_shared<platform::GpuDepthState>();
    }
    std::shared_ptr<platform::GpuTextureCache> makeTextureCache() override { return shared_from_this(); }
    std::shared_ptr<platform::GpuCommandQueue> makeCommandQueue() override { return shared_from_this(); }
    std::shared_ptr<platform::GpuTexture> makeTexture(platform::PixelBufferRef buffer,
                                                      platform::GpuFormat format, int plane, int width,
                                                      int height) override;
    std::unique_ptr<platform::GpuCommandBuffer> makeCommandBuffer() override;

    void write(const std::string& line);
    std::vector<std::string> takeJournal();
    void addCompletion(platform::Task completion);
    /// The GPU is done with all that was committed: calls the completions.
    void finish();

    std::string libraryError, pipelineError; ///< not empty: making one fails with this
    bool texturesFail = false;
    bool finishesAtOnce = true;                            ///< completions run inside commit
    std::shared_ptr<FakeGpuBuffer> buffer;                 ///< made last
    std::vector<std::shared_ptr<FakeGpuTexture>> drawn{4}; ///< by fragment texture index, as last set

  private:
    std::mutex m_mutex;
    std::vector<std::string> m_journal;
    std::vector<platform::Task> m_completions;
};

/// Plays the drawing thread: a frame is drawn when the test says, on the thread it says it.
struct FakeRenderPeer : RecordingPeer<platform::RenderViewPeer> {
    explicit FakeRenderPeer(platform::View& v) : view(v) {}
    void setDelegate(std::weak_ptr<platform::RenderViewDelegate> value) override {
        delegate = std::move(value);
    }
    void setSettings(const platform::RenderViewSettings& value) override { settings = value; }
    bool hasRenderPass() const override { return renderPass; }
    platform::Image newestPicture() override { return picture; }

    void draw() {
        if (const auto listener = delegate.lock())
            listener->drawInView(static_cast<platform::RenderView&>(view));
    }
    void resizeDrawable(const platform::Size& pixels) {
        delegate.lock()->drawableSizeWillChange(static_cast<platform::RenderView&>(view), pixels);
    }

    platform::View& view;
    std::weak_ptr<platform::RenderViewDelegate> delegate;
    platform::RenderViewSettings settings;
    bool renderPass = true;
    platform::Image picture; ///< as presented last
};

class FakeGpu : public platform::Gpu {
  public:
    std::shared_ptr<platform::GpuDevice> defaultDevice() override { return device; }
    std::unique_ptr<platform::RenderViewPeer> makeRenderPeer(platform::View& view) override;

    std::shared_ptr<FakeGpuDevice> device = std::make_shared<FakeGpuDevice>(); ///< null: no GPU interface
    FakeRenderPeer* newest = nullptr;                                          ///< of the view made last
};

} // namespace kestrin::test
