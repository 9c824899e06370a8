#include "linux/drawing/GlBuffer.h"

#include "linux/drawing/GlDebug.h"

namespace kestrin::gtk {

void GlBuffer::write(std::span<const float> values) {
    m_values.assign(values.begin(), values.end());
    m_isStale = true;
}

void GlBuffer::bind(GlStore& store) const {
    const bool isNew = !m_buffer.belongsTo(store);
    if (isNew)
        m_buffer = store.take(GlKind::buffer);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer.id());
    if (isNew)
        labelGlObject(GL_BUFFER, m_buffer.id(), m_label);
    if (isNew || m_isStale)
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(m_values.size() * sizeof(float)), m_values.data(),
                     GL_DYNAMIC_DRAW);
    m_isStale = false;
}

} // namespace kestrin::gtk
