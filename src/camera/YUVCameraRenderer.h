#pragma once

#include "camera/CountingSemaphore.h"
#include "platform/Gpu.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace kestrin {

/// Draws bi-planar YCbCr camera pictures as one quad that fills a render view, and can pace its drawing to a
/// signal from outside. Textures are views on the picture's planes: no pixel is copied here.
class YUVCameraRenderer {
  public:
    /// The device may be null; then nothing is ever drawn. Thread: main.
    static std::shared_ptr<YUVCameraRenderer>
    initWithDevice(std::shared_ptr<platform::GpuDevice> device,
                   const std::shared_ptr<platform::RenderView>& renderDestination);

    /// The transform takes the quad's base texture coordinates to those of the picture. Thread: any.
    void updateViewportResized(const platform::Size& size, const platform::AffineTransform& transform);
    /// Offers a picture. It is dropped when it has fewer than two planes or another one waits for its draw.
    /// Thread: session or camera, one call at a time.
    void renderCameraTex(const platform::PixelBufferRef& buffer);
    /// Draws one frame. Waits while three frames are in flight and, when locked, for the signal. Thread:
    /// drawing.
    void update();

    /// While locked, each draw waits at most 18 ms for a signal and then 12 ms more. Thread: any.
    void lockSignal() { _locked = true; }
    void unlockSignal() { _locked = false; }
    /// Lets one draw through; kept while nobody waits for it. Thread: any.
    void signal() { _cameraLockSemaphore.signal(); }
    /// Whether a picture waits for its draw. Thread: any.
    bool isWaiting() const { return _isWaiting.load(std::memory_order_acquire); }
    /// Ends a draw that waits, and all drawing for good. Thread: any.
    void stop();

  private:
    /// A picture as the fragment shader reads it; either may be missing.
    struct Textures {
        std::shared_ptr<platform::GpuTexture> luma, chroma;
    };

    YUVCameraRenderer(std::shared_ptr<platform::GpuDevice> device,
                      const std::shared_ptr<platform::RenderView>& renderDestination);

    void _loadMetal(platform::RenderView& view);
    void _makePipeline(const platform::RenderViewSettings& formats,
                       std::shared_ptr<platform::GpuLibrary> library);
    std::shared_ptr<platform::GpuTexture>
    _createTextureFromPixelBuffer(const platform::PixelBufferRef& buffer, platform::GpuFormat pixelFormat,
                                  int planeIndex) const;
    void _pace();
    void _draw(platform::RenderView& view);
    void _updateBufferStates();
    void _updateGameState();
    void _updateImagePlaneWithTransform(const platform::AffineTransform& transform);
    void _drawCapturedImageWithCommandEncoder(platform::GpuEncoder& encoder);

    const std::weak_ptr<platform::RenderView> _renderDestination;
    /// Shared with the completions of the frames in flight, which may outlive the renderer.
    const std::shared_ptr<CountingSemaphore> _inFlightSemaphore;
    CountingSemaphore _cameraLockSemaphore{0};
    const std::shared_ptr<platform::GpuDevice> _device;
    std::shared_ptr<platform::GpuCommandQueue> _commandQueue;
    std::shared_ptr<platform::GpuBuffer> _imagePlaneVertexBuffer;
    std::shared_ptr<platform::GpuPipeline> _capturedImagePipelineState;
    std::shared_ptr<platform::GpuDepthState> _capturedImageDepthState;
    std::shared_ptr<platform::GpuTextureCache> _capturedImageTextureCache;

    /// Written by the delivering thread while `_isWaiting` is false, read by drawing while it is true.
    Textures _capturedImageTextures;
    std::atomic<bool> _isWaiting = false;
    Textures m_drawnTextures; ///< drawing's own, drawn again until the next picture

    unsigned _uniformBufferIndex = 0;
    std::mutex m_viewportMutex; ///< guards the next three
    platform::Size _viewportSize;
    platform::AffineTransform _viewportTransform;
    bool _viewportSizeDidChange = false;

    std::atomic<bool> _locked = false;
    std::atomic<bool> m_stopped = false;
};

} // namespace kestrin
