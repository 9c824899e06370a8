#pragma once

#include "linux/drawing/GlStore.h"
#include "platform/Gpu.h"

namespace kestrin::gtk {

/// A plane of a picture. Its pixels reach GL when it is drawn for the first time, and once.
class GlTexture final : public platform::GpuTexture {
  public:
    /// Null when the buffer has no such plane, or the format is none of a plane. Thread: any.
    static std::shared_ptr<GlTexture> make(platform::PixelBufferRef buffer, platform::GpuFormat format,
                                           int plane, int width, int height);

    /// Binds it to the active texture unit. Thread: drawing.
    void bind(GlStore& store);

  private:
    GlTexture(platform::PixelBufferRef buffer, const platform::PixelPlane& plane, const TextureShape& shape)
        : m_buffer(std::move(buffer)), m_plane(plane), m_shape(shape) {}
    void upload() const;

    const platform::PixelBufferRef m_buffer;
    const platform::PixelPlane m_plane;
    const TextureShape m_shape;
    GlHandle m_texture;
};

class GlTextureCache final : public platform::GpuTextureCache {
  public:
    std::shared_ptr<platform::GpuTexture> makeTexture(platform::PixelBufferRef buffer,
                                                      platform::GpuFormat format, int plane, int width,
                                                      int height) override {
        return GlTexture::make(std::move(buffer), format, plane, width, height);
    }
};

} // namespace kestrin::gtk
