#pragma once

#include "platform/Gpu.h"
#include "platform/Log.h"

#include <optional>

namespace kestrin::gtk {

/// OpenGL 3.2 or OpenGL ES 3, as the toolkit uses it. Thread: main.
class GlGpu final : public platform::Gpu {
  public:
    explicit GlGpu(std::shared_ptr<platform::LogSink> log) : m_log(std::move(log)) {}

    /// Null, with a line in the log the first time, when the display has no GL.
    std::shared_ptr<platform::GpuDevice> defaultDevice() override;
    std::unique_ptr<platform::RenderViewPeer> makeRenderPeer(platform::View& view) override;

  private:
    std::shared_ptr<platform::GpuDevice> probe() const;

    const std::shared_ptr<platform::LogSink> m_log;
    std::optional<std::shared_ptr<platform::GpuDevice>> m_device;
};

} // namespace kestrin::gtk
