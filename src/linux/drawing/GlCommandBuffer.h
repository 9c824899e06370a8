#pragma once

#include "platform/Gpu.h"

#include <vector>

namespace kestrin::gtk {

class DrawingThread;

/// Work that GL is given as it is recorded; committing it sets it off. Thread: drawing.
class GlCommandBuffer final : public platform::GpuCommandBuffer {
  public:
    void setLabel(const std::string& label) override { m_label = label; }
    void addCompletion(platform::Task completion) override;
    /// Null when the view has nothing to draw into.
    std::unique_ptr<platform::GpuEncoder> makeEncoder(platform::RenderView& view) override;
    void present(platform::RenderView& view) override;
    void commit() override;

  private:
    std::string m_label;
    std::vector<platform::Task> m_completions;
    DrawingThread* m_thread = nullptr; ///< of the view that is drawn
    bool m_presents = false;
};

class GlCommandQueue final : public platform::GpuCommandQueue {
  public:
    std::unique_ptr<platform::GpuCommandBuffer> makeCommandBuffer() override {
        return std::make_unique<GlCommandBuffer>();
    }
};

} // namespace kestrin::gtk
