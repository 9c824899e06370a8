#include "camera/YUVCameraRenderer.h"

#include "services/util/Format.h"

#include <array>
#include <chrono>
#include <thread>
#include <utility>

namespace kestrin {

using namespace platform;
using namespace std::chrono_literals;

namespace {

constexpr std::uint64_t kFramesInFlight = 3;
constexpr auto kSignalWait = 18ms;
constexpr auto kAfterSignal = 12ms;

constexpr std::size_t kFloatsPerVertex = 4;
/// x, y, u, v of a triangle strip.
constexpr std::array<float, 4 * kFloatsPerVertex> kImagePlaneVertexData = {
    -1, -1, 0, 1, //
    1,  -1, 1, 1, //
    -1, 1,  0, 0, //
    1,  1,  1, 0,
};

} // namespace

std::shared_ptr<YUVCameraRenderer>
YUVCameraRenderer::initWithDevice(std::shared_ptr<GpuDevice> device,
                                  const std::shared_ptr<RenderView>& renderDestination) {
    return std::shared_ptr<YUVCameraRenderer>(new YUVCameraRenderer(std::move(device), renderDestination));
}

YUVCameraRenderer::YUVCameraRenderer(std::shared_ptr<GpuDevice> device,
                                     const std::shared_ptr<RenderView>& renderDestination)
    : _renderDestination(renderDestination),
      _inFlightSemaphore(std::make_shared<CountingSemaphore>(kFramesInFlight)), _device(std::move(device)) {
    _loadMetal(*renderDestination);
}

void YUVCameraRenderer::_loadMetal(RenderView& view) {
    RenderViewSettings settings = view.settings();
    settings.depthStencilFormat = GpuFormat::depth32FloatStencil8;
    settings.colorFormat = GpuFormat::bgra8Unorm;
    settings.sampleCount = 1;
    view.setSettings(settings);
    if (_device) {
        _imagePlaneVertexBuffer = _device->makeBuffer(kImagePlaneVertexData);
        _imagePlaneVertexBuffer->setLabel("ImagePlaneVertexBuffer");
    }
    const auto library = _device ? _device->makeLibrary("default", "metallib")
                                 : GpuResult<GpuLibrary>("there is no device for them");
    if (const auto* error = std::get_if<std::string>(&library)) {
        log("Error Loading Default Shaders = %@", *error);
        return;
    }
    _makePipeline(settings, std::get<std::shared_ptr<GpuLibrary>>(library));
    _capturedImageDepthState = _device->makeDepthState({GpuCompare::always, false});
    _capturedImageTextureCache = _device->makeTextureCache();
    _commandQueue = _device->makeCommandQueue();
}

void YUVCameraRenderer::_makePipeline(const RenderViewSettings& formats,
                                      std::shared_ptr<GpuLibrary> library) {
    GpuPipelineDescriptor descriptor;
    descriptor.label = "MyCapturedImagePipeline";
    descriptor.sampleCount = formats.sampleCount;
    descriptor.colorFormat = formats.colorFormat;
    descriptor.depthFormat = formats.depthStencilFormat;
    descriptor.stencilFormat = formats.depthStencilFormat;
    descriptor.library = std::move(library);
    descriptor.vertexFunction = "capturedImageVertexTransform";
    descriptor.fragmentFunction = "capturedImageFragmentShader";
    descriptor.attributes = {{GpuFormat::float2, 0, 0}, {GpuFormat::float2, 2 * sizeof(float), 0}};
    descriptor.vertexStride = kFloatsPerVertex * sizeof(float);
    const auto pipeline = _device->makePipeline(descriptor);
    if (const auto* error = std::get_if<std::string>(&pipeline))
        log("Failed to created captured image pipeline state, error %@", *error);
    else
        _capturedImagePipelineState = std::get<std::shared_ptr<GpuPipeline>>(pipeline);
}

void YUVCameraRenderer::updateViewportResized(const Size& size, const AffineTransform& transform) {
    const std::lock_guard lock(m_viewportMutex);
    _viewportSize = size;
    _viewportTransform = transform;
    _viewportSizeDidChange = true;
}

void YUVCameraRenderer::renderCameraTex(const PixelBufferRef& buffer) {
    if (!buffer || buffer->planeCount() < 2 || isWaiting())
        return;
    _capturedImageTextures = {_createTextureFromPixelBuffer(buffer, GpuFormat::r8Unorm, 0),
                              _createTextureFromPixelBuffer(buffer, GpuFormat::rg8Unorm, 1)};
    _isWaiting.store(true, std::memory_order_release);
}

std::shared_ptr<GpuTexture> YUVCameraRenderer::_createTextureFromPixelBuffer(const PixelBufferRef& buffer,
                                                                             GpuFormat pixelFormat,
                                                                             int planeIndex) const {
    if (!_capturedImageTextureCache)
        return nullptr;
    const PixelPlane plane = buffer->plane(planeIndex);
    return _capturedImageTextureCache->makeTexture(buffer, pixelFormat, planeIndex, plane.width,
                                                   plane.height);
}

void YUVCameraRenderer::update() {
    const auto view = _renderDestination.lock();
    if (!view || !_commandQueue || m_stopped)
        return;
    _inFlightSemaphore->wait();
    _pace();
    if (m_stopped)
        return;
    _draw(*view);
}

void YUVCameraRenderer::_pace() {
    if (!_locked || m_stopped)
        return;
    _cameraLockSemaphore.waitFor(kSignalWait);
    if (!m_stopped)
        std::this_thread::sleep_for(kAfterSignal);
}

void YUVCameraRenderer::_draw(RenderView& view) {
    const bool taken = isWaiting();
    if (taken)
        m_drawnTextures = std::exchange(_capturedImageTextures, {});

    const auto commands = _commandQueue->makeCommandBuffer();
    commands->setLabel("MyCommand");
    // The textures stay until the GPU is done with them, whatever replaces them meanwhile.
    commands->addCompletion(
        [inFlight = _inFlightSemaphore, textures = m_drawnTextures] { inFlight->signal(); });
    _updateBufferStates();
    _updateGameState();
    if (view.renderPeer().hasRenderPass()) {
        const auto encoder = commands->makeEncoder(view);
        encoder->setLabel("MyRenderEncoder");
        _drawCapturedImageWithCommandEncoder(*encoder);
        encoder->endEncoding();
    }
    commands->present(view);
    commands->commit();
    // A picture that came during this draw was not taken and keeps waiting.
    if (taken)
        _isWaiting.store(false, std::memory_order_release);
}

void YUVCameraRenderer::_updateBufferStates() {
    _uniformBufferIndex = (_uniformBufferIndex + 1) % unsigned(kFramesInFlight);
}

void YUVCameraRenderer::_updateGameState() {
    AffineTransform transform;
    {
        const std::lock_guard lock(m_viewportMutex);
        if (!std::exchange(_viewportSizeDidChange, false))
            return;
        transform = _viewportTransform;
    }
    _updateImagePlaneWithTransform(transform);
}

void YUVCameraRenderer::_updateImagePlaneWithTransform(const AffineTransform& transform) {
    auto vertices = kImagePlaneVertexData;
    for (std::size_t vertex = 0; vertex < vertices.size(); vertex += kFloatsPerVertex) {
        const Point turned = transform * Point{vertices[vertex + 2], vertices[vertex + 3]};
        vertices[vertex + 2] = float(turned.x);
        vertices[vertex + 3] = float(turned.y);
    }
    _imagePlaneVertexBuffer->write(vertices);
}

void YUVCameraRenderer::_drawCapturedImageWithCommandEncoder(GpuEncoder& encoder) {
    const bool drawable = m_drawnTextures.luma && m_drawnTextures.chroma && _capturedImagePipelineState;
    if (!drawable)
        return;
    encoder.pushDebugGroup("DrawCapturedImage");
    encoder.setCullModeNone();
    encoder.setPipeline(*_capturedImagePipelineState);
    encoder.setDepthState(*_capturedImageDepthState);
    encoder.setVertexBuffer(*_imagePlaneVertexBuffer, 0, 0);
    encoder.setFragmentTexture(m_drawnTextures.luma, 1);
    encoder.setFragmentTexture(m_drawnTextures.chroma, 2);
    encoder.drawTriangleStrip(0, 4);
    encoder.popDebugGroup();
}

void YUVCameraRenderer::stop() {
    m_stopped = true;
    _inFlightSemaphore->signal();
    _cameraLockSemaphore.signal();
}

} // namespace kestrin
