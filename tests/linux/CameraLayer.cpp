#include "linux/CameraLayer.h"

namespace kestrin::test {

using platform::GpuFormat;

/// x, y, u, v of a triangle strip.
constexpr std::array<float, 16> kQuad = {-1, -1, 0, 1, 1, -1, 1, 1, -1, 1, 0, 0, 1, 1, 1, 0};

CameraLayer::CameraLayer(platform::RenderView& view) {
    platform::GpuDevice& device = *view.device();
    platform::GpuPipelineDescriptor descriptor;
    descriptor.label = "test";
    descriptor.library = std::get<0>(device.makeLibrary("default", "metallib"));
    descriptor.vertexFunction = "capturedImageVertexTransform";
    descriptor.fragmentFunction = "capturedImageFragmentShader";
    descriptor.attributes = {{GpuFormat::float2, 0, 0}, {GpuFormat::float2, 8, 0}};
    descriptor.vertexStride = 16;
    m_pipeline = std::get<0>(device.makePipeline(descriptor));
    m_quad = device.makeBuffer(kQuad);
    m_depth = device.makeDepthState({});
    m_cache = device.makeTextureCache();
    m_queue = device.makeCommandQueue();
}

void CameraLayer::show(const platform::PixelBufferRef& picture) {
    const platform::PixelPlane luma = picture->plane(0), chroma = picture->plane(1);
    Textures textures{m_cache->makeTexture(picture, GpuFormat::r8Unorm, 0, luma.width, luma.height),
                      m_cache->makeTexture(picture, GpuFormat::rg8Unorm, 1, chroma.width, chroma.height)};
    const std::lock_guard lock(m_mutex);
    m_textures = std::move(textures);
}

void CameraLayer::drawInView(platform::RenderView& view) {
    if (beforeDraw)
        beforeDraw();
    Textures textures;
    {
        const std::lock_guard lock(m_mutex);
        textures = m_textures;
    }
    const auto commands = m_queue->makeCommandBuffer();
    commands->addCompletion([this] { ++draws; });
    if (view.renderPeer().hasRenderPass() && textures.luma && textures.chroma)
        encode(*commands->makeEncoder(view), textures);
    commands->present(view);
    commands->commit();
}

void CameraLayer::encode(platform::GpuEncoder& encoder, const Textures& textures) {
    encoder.setPipeline(*m_pipeline);
    encoder.setDepthState(*m_depth);
    encoder.setVertexBuffer(*m_quad, 0, 0);
    encoder.setFragmentTexture(textures.luma, 1);
    encoder.setFragmentTexture(textures.chroma, 2);
    encoder.drawTriangleStrip(0, 4);
    encoder.endEncoding();
}

} // namespace kestrin::test
