#include "linux/drawing/GlEncoder.h"

#include "linux/drawing/DrawingThread.h"
#include "linux/drawing/GlBuffer.h"
#include "linux/drawing/GlDebug.h"
#include "linux/drawing/GlPipeline.h"
#include "linux/drawing/GlTexture.h"

#include <utility>

namespace kestrin::gtk {

void GlEncoder::setLabel(const std::string& label) {
    if (!std::exchange(m_hasLabel, true))
        pushGlGroup(label);
}

void GlEncoder::endEncoding() {
    if (std::exchange(m_hasLabel, false))
        popGlGroup();
}

void GlEncoder::pushDebugGroup(const std::string& name) { pushGlGroup(name); }

void GlEncoder::popDebugGroup() { popGlGroup(); }

void GlEncoder::setCullModeNone() { glDisable(GL_CULL_FACE); }

void GlEncoder::setPipeline(const platform::GpuPipeline& pipeline) {
    m_pipeline = static_cast<const GlPipeline*>(&pipeline);
}

// The only state that can be made ignores depth.
void GlEncoder::setDepthState(const platform::GpuDepthState&) { glDisable(GL_DEPTH_TEST); }

void GlEncoder::setVertexBuffer(const platform::GpuBuffer& buffer, int offset, int index) {
    m_vertices[index] = {static_cast<const GlBuffer*>(&buffer), offset};
}

void GlEncoder::setFragmentTexture(std::shared_ptr<platform::GpuTexture> texture, int index) {
    m_textures[index] = std::static_pointer_cast<GlTexture>(std::move(texture));
}

void GlEncoder::drawTriangleStrip(int first, int count) {
    GlStore& store = m_thread.store();
    m_thread.bindPass();
    if (!m_pipeline || !m_pipeline->use(store))
        return;
    for (const auto& [index, vertices] : m_vertices) {
        vertices.buffer->bind(store);
        m_pipeline->layOut(index, vertices.offset);
    }
    for (const auto& [index, texture] : m_textures) {
        glActiveTexture(GLenum(GL_TEXTURE0 + index));
        if (texture)
            texture->bind(store);
    }
    glDrawArrays(GL_TRIANGLE_STRIP, first, count);
}

} // namespace kestrin::gtk
