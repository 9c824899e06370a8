#pragma once

#include "linux/drawing/GlLibrary.h"
#include "linux/drawing/GlStore.h"
#include "platform/Log.h"

namespace kestrin::gtk {

/// A shader program with its vertex layout. Compiled by the drawing thread that first uses it.
class GlPipeline final : public platform::GpuPipeline {
  public:
    GlPipeline(platform::GpuPipelineDescriptor descriptor, std::shared_ptr<const GlLibrary> library,
               std::shared_ptr<platform::LogSink> log)
        : m_descriptor(std::move(descriptor)), m_library(std::move(library)), m_log(std::move(log)) {}

    /// Makes it current, with its vertex layout; false when it does not compile, which is logged once.
    /// Thread: drawing.
    bool use(GlStore& store) const;
    /// Lays out the current array buffer as buffer `index`, from `offset` bytes on. Thread: drawing.
    void layOut(int index, int offset) const;

  private:
    void build(GLuint program) const;
    std::string source(GLenum stage) const;

    const platform::GpuPipelineDescriptor m_descriptor;
    const std::shared_ptr<const GlLibrary> m_library;
    const std::shared_ptr<platform::LogSink> m_log;
    mutable GlHandle m_program, m_layout;
    mutable bool m_works = false;
};

} // namespace kestrin::gtk
