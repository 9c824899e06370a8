#include "linux/drawing/GlTexture.h"

#include <utility>

namespace kestrin::gtk {

namespace {

/// Bytes a sample; 0 for a format that no plane has.
int sampleSize(platform::GpuFormat format) {
    switch (format) {
    case platform::GpuFormat::r8Unorm:
        return 1;
    case platform::GpuFormat::rg8Unorm:
        return 2;
    default:
        return 0;
    }
}

} // namespace

std::shared_ptr<GlTexture> GlTexture::make(platform::PixelBufferRef buffer, platform::GpuFormat format,
                                           int plane, int width, int height) {
    const platform::PixelPlane pixels = buffer ? buffer->plane(plane) : platform::PixelPlane();
    const int size = sampleSize(format);
    const bool fits = size > 0 && pixels.data && width > 0 && height > 0 && width <= pixels.width &&
                      height <= pixels.height && pixels.stride / size >= width;
    if (!fits)
        return nullptr;
    const TextureShape shape{size == 1 ? GL_R8 : GL_RG8, width, height};
    return std::shared_ptr<GlTexture>(new GlTexture(std::move(buffer), pixels, shape));
}

void GlTexture::bind(GlStore& store) {
    if (m_texture.belongsTo(store)) {
        glBindTexture(GL_TEXTURE_2D, m_texture.id());
        return;
    }
    m_texture = store.takeTexture(m_shape);
    glBindTexture(GL_TEXTURE_2D, m_texture.id());
    upload();
}

void GlTexture::upload() const {
    const int size = m_shape.internalFormat == GL_R8 ? 1 : 2;
    const GLenum format = size == 1 ? GL_RED : GL_RG;
    const auto rows = [&](int first, int count) {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, first, m_shape.width, count, format, GL_UNSIGNED_BYTE,
                        m_plane.data + std::ptrdiff_t(first) * m_plane.stride);
    };
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (m_plane.stride % size == 0) {
        glPixelStorei(GL_UNPACK_ROW_LENGTH, m_plane.stride / size);
        rows(0, m_shape.height);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
        return;
    }
    // GL counts a row in samples, so rows that end in the middle of one are handed over one by one.
    for (int row = 0; row < m_shape.height; ++row)
        rows(row, 1);
}

} // namespace kestrin::gtk
