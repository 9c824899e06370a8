#pragma once

#include "platform/Capture.h"
#include "platform/Image.h"
#include "platform/View.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::platform {

enum class GpuFormat { r8Unorm, rg8Unorm, bgra8Unorm, depth32FloatStencil8, float2 };

/// Memory that shaders read. Thread: drawing, or before drawing began.
class GpuBuffer {
  public:
    virtual ~GpuBuffer() = default;
    virtual void write(std::span<const float> values) = 0;
    virtual void setLabel(const std::string& label) = 0;
};

/// A plane of a pixel buffer as shaders see it. It holds the pixel buffer. Thread: any.
class GpuTexture {
  public:
    virtual ~GpuTexture() = default;
};

/// Makes textures from pixel-buffer planes. Needs no GL of the calling thread: pixels reach the GPU when a
/// texture is first drawn. Thread: any.
class GpuTextureCache {
  public:
    virtual ~GpuTextureCache() = default;
    /// Null when the buffer has no such plane.
    virtual std::shared_ptr<GpuTexture> makeTexture(PixelBufferRef buffer, GpuFormat format, int plane,
                                                    int width, int height) = 0;
};

class GpuLibrary {
  public:
    virtual ~GpuLibrary() = default;
};

struct GpuVertexAttribute {
    GpuFormat format = GpuFormat::float2;
    int offset = 0, buffer = 0;
};

struct GpuPipelineDescriptor {
    std::string label;
    int sampleCount = 1;
    GpuFormat colorFormat = GpuFormat::bgra8Unorm, depthFormat = GpuFormat::bgra8Unorm,
              stencilFormat = GpuFormat::bgra8Unorm;
    std::shared_ptr<GpuLibrary> library;
    std::string vertexFunction, fragmentFunction;
    std::vector<GpuVertexAttribute> attributes;
    int vertexStride = 0; ///< bytes
};

class GpuPipeline {
  public:
    virtual ~GpuPipeline() = default;
};

enum class GpuCompare { always, less };

struct GpuDepthDescriptor {
    GpuCompare compare = GpuCompare::always;
    bool writes = false;
};

class GpuDepthState {
  public:
    virtual ~GpuDepthState() = default;
};

/// Records one pass. Thread: drawing.
class GpuEncoder {
  public:
    virtual ~GpuEncoder() = default;
    virtual void setLabel(const std::string& label) = 0;
    virtual void pushDebugGroup(const std::string& name) = 0;
    virtual void popDebugGroup() = 0;
    virtual void setCullModeNone() = 0;
    virtual void setPipeline(const GpuPipeline& pipeline) = 0;
    virtual void setDepthState(const GpuDepthState& state) = 0;
    virtual void setVertexBuffer(const GpuBuffer& buffer, int offset, int index) = 0;
    virtual void setFragmentTexture(std::shared_ptr<GpuTexture> texture, int index) = 0;
    virtual void drawTriangleStrip(int first, int count) = 0;
    virtual void endEncoding() = 0;
};

class RenderView;

/// Work for the GPU. Thread: drawing.
class GpuCommandBuffer {
  public:
    virtual ~GpuCommandBuffer() = default;
    virtual void setLabel(const std::string& label) = 0;
    /// Called once the GPU is done with this buffer's work. Thread: drawing.
    virtual void addCompletion(Task completion) = 0;
    /// Into the view's current render pass.
    virtual std::unique_ptr<GpuEncoder> makeEncoder(RenderView& view) = 0;
    virtual void present(RenderView& view) = 0;
    virtual void commit() = 0;
};

class GpuCommandQueue {
  public:
    virtual ~GpuCommandQueue() = default;
    virtual std::unique_ptr<GpuCommandBuffer> makeCommandBuffer() = 0;
};

/// A made thing, or why it could not be made.
template <class T>
using GpuResult = std::variant<std::shared_ptr<T>, std::string>;

/// Thread: any, unless a made thing says otherwise.
class GpuDevice {
  public:
    virtual ~GpuDevice() = default;
    virtual std::shared_ptr<GpuBuffer> makeBuffer(std::span<const float> values) = 0;
    /// From the framework's resources: shader programs by name.
    virtual GpuResult<GpuLibrary> makeLibrary(const std::string& name, const std::string& type) = 0;
    virtual GpuResult<GpuPipeline> makePipeline(const GpuPipelineDescriptor& descriptor) = 0;
    virtual std::shared_ptr<GpuDepthState> makeDepthState(const GpuDepthDescriptor& descriptor) = 0;
    virtual std::shared_ptr<GpuTextureCache> makeTextureCache() = 0;
    virtual std::shared_ptr<GpuCommandQueue> makeCommandQueue() = 0;
};

/// Called by a render view.
class RenderViewDelegate {
  public:
    virtual ~RenderViewDelegate() = default;
    /// Once a frame. May wait. Thread: drawing.
    virtual void drawInView(RenderView& view) = 0;
    /// Thread: main.
    virtual void drawableSizeWillChange(RenderView& view, const Size& pixels) = 0;
};

struct RenderViewSettings {
    GpuFormat colorFormat = GpuFormat::bgra8Unorm;
    GpuFormat depthStencilFormat = GpuFormat::bgra8Unorm;
    int sampleCount = 1;
    bool framebufferOnly = false;
    int preferredFramesPerSecond = 60;
};

class RenderViewPeer : public ViewPeer {
  public:
    virtual void setDelegate(std::weak_ptr<RenderViewDelegate> delegate) = 0;
    virtual void setSettings(const RenderViewSettings& settings) = 0;
    /// Whether there is something to draw into now. Thread: drawing.
    virtual bool hasRenderPass() const = 0;
    /// The newest picture that was presented, in pixels; absent before the first. Does not wait for the
    /// drawing thread. Thread: main.
    virtual Image newestPicture() = 0;
};

/// A view drawn by the GPU, on a drawing thread of its own that runs while the view is shown. Thread: main.
class RenderView : public View {
  public:
    RenderView();

    /// Null when the system has no GPU interface.
    const std::shared_ptr<GpuDevice>& device() const { return m_device; }
    void setDelegate(std::weak_ptr<RenderViewDelegate> delegate);
    const RenderViewSettings& settings() const { return m_settings; }
    void setSettings(const RenderViewSettings& settings);
    RenderViewPeer& renderPeer() const { return m_renderPeer; }

  private:
    explicit RenderView(std::unique_ptr<RenderViewPeer> peer);

    RenderViewPeer& m_renderPeer;
    std::shared_ptr<GpuDevice> m_device;
    RenderViewSettings m_settings;
};

class Gpu {
  public:
    virtual ~Gpu() = default;
    /// Null when the system has no GPU interface.
    virtual std::shared_ptr<GpuDevice> defaultDevice() = 0;
    /// Thread: main.
    virtual std::unique_ptr<RenderViewPeer> makeRenderPeer(View& view) = 0;
};

} // namespace kestrin::platform
