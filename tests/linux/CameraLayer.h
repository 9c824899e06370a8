#pragma once

#include "platform/Gpu.h"

#include <array>
#include <atomic>
#include <mutex>

namespace kestrin::test {

/// Draws the newest picture over the whole render view, as the camera layer does.
class CameraLayer : public platform::RenderViewDelegate {
  public:
    explicit CameraLayer(platform::RenderView& view);

    /// Thread: any.
    void show(const platform::PixelBufferRef& picture);

    void drawInView(platform::RenderView& view) override;
    void drawableSizeWillChange(platform::RenderView&, const platform::Size& p) override {
        sizes.push_back(p);
    }

    /// Called on the drawing thread before each frame is drawn.
    std::function<void()> beforeDraw;
    std::atomic<int> draws = 0;        ///< completed ones
    std::vector<platform::Size> sizes; ///< main

  private:
    struct Textures {
        std::shared_ptr<platform::GpuTexture> luma, chroma;
    };
    void encode(platform::GpuEncoder& encoder, const Textures& textures);

    std::shared_ptr<platform::GpuPipeline> m_pipeline;
    std::shared_ptr<platform::GpuBuffer> m_quad;
    std::shared_ptr<platform::GpuDepthState> m_depth;
    std::shared_ptr<platform::GpuTextureCache> m_cache;
    std::shared_ptr<platform::GpuCommandQueue> m_queue;
    std::mutex m_mutex;
    Textures m_textures; // guarded
};

} // namespace kestrin::test
