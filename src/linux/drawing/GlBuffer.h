#pragma once

#include "linux/drawing/GlStore.h"
#include "platform/Gpu.h"

namespace kestrin::gtk {

/// Vertices. Written in memory, handed to GL when they are drawn and have changed.
class GlBuffer final : public platform::GpuBuffer {
  public:
    explicit GlBuffer(std::span<const float> values) { write(values); }

    void write(std::span<const float> values) override;
    void setLabel(const std::string& label) override { m_label = label; }

    /// Makes it the current array buffer. Thread: drawing.
    void bind(GlStore& store) const;

  private:
    std::vector<float> m_values;
    std::string m_label;
    mutable GlHandle m_buffer;
    mutable bool m_isStale = true;
};

} // namespace kestrin::gtk
