#include "linux/drawing/GlCommandBuffer.h"

#include "linux/drawing/DrawingThread.h"
#include "linux/drawing/GlEncoder.h"
#include "linux/drawing/RenderPeer.h"

#include <utility>

namespace kestrin::gtk {

namespace {

DrawingThread* threadOf(platform::RenderView& view) {
    return static_cast<RenderPeer&>(view.renderPeer()).drawingThread();
}

} // namespace

void GlCommandBuffer::addCompletion(platform::Task completion) {
    m_completions.push_back(std::move(completion));
}

std::unique_ptr<platform::GpuEncoder> GlCommandBuffer::makeEncoder(platform::RenderView& view) {
    DrawingThread* const thread = threadOf(view);
    if (!thread || !thread->hasPass())
        return nullptr;
    m_thread = thread;
    return std::make_unique<GlEncoder>(*thread);
}

void GlCommandBuffer::present(platform::RenderView& view) {
    DrawingThread* const thread = threadOf(view);
    if (!thread || !thread->hasPass())
        return;
    m_thread = thread;
    m_presents = true;
}

void GlCommandBuffer::commit() {
    if (m_thread) {
        m_thread->submit(std::exchange(m_completions, {}), m_presents && m_thread->hasPass());
        return;
    }
    for (const platform::Task& completion : std::exchange(m_completions, {}))
        completion(); // there was nothing to draw
}

} // namespace kestrin::gtk
