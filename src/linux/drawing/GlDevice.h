#pragma once

#include "platform/Gpu.h"
#include "platform/Log.h"

namespace kestrin::gtk {

/// Makes what is drawn with. Nothing made here needs GL before a drawing thread uses it. Thread: any.
class GlDevice final : public platform::GpuDevice {
  public:
    explicit GlDevice(std::shared_ptr<platform::LogSink> log) : m_log(std::move(log)) {}

    std::shared_ptr<platform::GpuBuffer> makeBuffer(std::span<const float> values) override;
    platform::GpuResult<platform::GpuLibrary> makeLibrary(const std::string& name,
                                                          const std::string& type) override;
    platform::GpuResult<platform::GpuPipeline>
    makePipeline(const platform::GpuPipelineDescriptor& descriptor) override;
    /// A render view has colour only: null for a state that compares or writes depth.
    std::shared_ptr<platform::GpuDepthState>
    makeDepthState(const platform::GpuDepthDescriptor& descriptor) override;
    std::shared_ptr<platform::GpuTextureCache> makeTextureCache() override;
    std::shared_ptr<platform::GpuCommandQueue> makeCommandQueue() override;

  private:
    const std::shared_ptr<platform::LogSink> m_log;
};

} // namespace kestrin::gtk
