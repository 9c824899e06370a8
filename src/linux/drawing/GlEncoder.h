#pragma once

#include "platform/Gpu.h"

#include <map>
#include <string>

namespace kestrin::gtk {

class DrawingThread;
class GlBuffer;
class GlPipeline;
class GlTexture;

/// Collects what the next draw uses, and draws into the view's pass. Thread: drawing.
class GlEncoder final : public platform::GpuEncoder {
  public:
    explicit GlEncoder(DrawingThread& thread) : m_thread(thread) {}

    void setLabel(const std::string& label) override;
    void pushDebugGroup(const std::string& name) override;
    void popDebugGroup() override;
    void setCullModeNone() override;
    void setPipeline(const platform::GpuPipeline& pipeline) override;
    void setDepthState(const platform::GpuDepthState& state) override;
    void setVertexBuffer(const platform::GpuBuffer& buffer, int offset, int index) override;
    void setFragmentTexture(std::shared_ptr<platform::GpuTexture> texture, int index) override;
    /// Draws nothing without a pipeline that works.
    void drawTriangleStrip(int first, int count) override;
    void endEncoding() override;

  private:
    struct Vertices {
        const GlBuffer* buffer;
        int offset;
    };

    DrawingThread& m_thread;
    const GlPipeline* m_pipeline = nullptr;
    std::map<int, Vertices> m_vertices;
    std::map<int, std::shared_ptr<GlTexture>> m_textures;
    bool m_hasLabel = false;
};

} // namespace kestrin::gtk
