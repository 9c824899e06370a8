#include "support/FakeGpu.h"

#include <utility>

namespace kestrin::test {

using namespace platform;

namespace {

struct TextureCache : GpuTextureCache {
    explicit TextureCache(std::shared_ptr<FakeGpuDevice> d) : device(std::move(d)) {}
    std::shared_ptr<GpuTexture> makeTexture(PixelBufferRef buffer, GpuFormat format, int plane, int width,
                                            int height) override {
        if (device->texturesFail || !buffer || plane >= buffer->planeCount())
            return nullptr;
        auto texture = std::make_shared<FakeGpuTexture>();
        texture->buffer = std::move(buffer);
        texture->format = format;
        texture->plane = plane;
        texture->width = width;
        texture->height = height;
        return texture;
    }
    std::shared_ptr<FakeGpuDevice> device;
};

struct Encoder : GpuEncoder {
    explicit Encoder(FakeGpuDevice& d) : device(d) {}
    void setLabel(const std::string& label) override { device.write("label " + label); }
    void pushDebugGroup(const std::string& name) override { device.write("push " + name); }
    void popDebugGroup() override { device.write("pop"); }
    void setCullModeNone() override { device.write("cull none"); }
    void setPipeline(const GpuPipeline&) override { device.write("pipeline"); }
    void setDepthState(const GpuDepthState&) override { device.write("depth"); }
    void setVertexBuffer(const GpuBuffer&, int, int index) override {
        device.write("vertices " + std::to_string(index));
    }
    void setFragmentTexture(std::shared_ptr<GpuTexture> texture, int index) override {
        device.write("texture " + std::to_string(index));
        device.drawn.at(std::size_t(index)) = std::dynamic_pointer_cast<FakeGpuTexture>(texture);
    }
    void drawTriangleStrip(int first, int count) override {
        device.write("strip " + std::to_string(first) + " " + std::to_string(count));
    }
    void endEncoding() override { device.write("end"); }
    FakeGpuDevice& device;
};

struct CommandBuffer : GpuCommandBuffer {
    explicit CommandBuffer(std::shared_ptr<FakeGpuDevice> d) : device(std::move(d)) {}
    void setLabel(const std::string& label) override { device->write("label " + label); }
    void addCompletion(Task completion) override { device->addCompletion(std::move(completion)); }
    std::unique_ptr<GpuEncoder> makeEncoder(RenderView&) override {
        device->write("makeEncoder");
        return std::make_unique<Encoder>(*device);
    }
    void present(RenderView&) override { device->write("present"); }
    void commit() override {
        device->write("commit");
        device->committed();
    }
    std::shared_ptr<FakeGpuDevice> device;
};

struct CommandQueue : GpuCommandQueue {
    explicit CommandQueue(std::shared_ptr<FakeGpuDevice> d) : device(std::move(d)) {}
    std::unique_ptr<GpuCommandBuffer> makeCommandBuffer() override {
        device->write("makeCommandBuffer");
        return std::make_unique<CommandBuffer>(device);
    }
    std::shared_ptr<FakeGpuDevice> device;
};

} // namespace

std::shared_ptr<GpuBuffer> FakeGpuDevice::makeBuffer(std::span<const float> values) {
    buffer = std::make_shared<FakeGpuBuffer>();
    buffer->write(values);
    return buffer;
}

GpuResult<GpuLibrary> FakeGpuDevice::makeLibrary(const std::string& name, const std::string& type) {
    libraryName = name + "." + type;
    if (!libraryError.empty())
        return libraryError;
    return std::make_shared<GpuLibrary>();
}

GpuResult<GpuPipeline> FakeGpuDevice::makePipeline(const GpuPipelineDescriptor& descriptor) {
    pipeline = descriptor;
    if (!pipelineError.empty())
        return pipelineError;
    return std::make_shared<GpuPipeline>();
}

std::shared_ptr<GpuDepthState> FakeGpuDevice::makeDepthState(const GpuDepthDescriptor& descriptor) {
    depth = descriptor;
    return std::make_shared<GpuDepthState>();
}

std::shared_ptr<GpuTextureCache> FakeGpuDevice::makeTextureCache() {
    return std::make_shared<TextureCache>(shared_from_this());
}

std::shared_ptr<GpuCommandQueue> FakeGpuDevice::makeCommandQueue() {
    return std::make_shared<CommandQueue>(shared_from_this());
}

void FakeGpuDevice::write(const std::string& line) {
    const std::lock_guard lock(m_mutex);
    m_journal.push_back(line);
}

std::vector<std::string> FakeGpuDevice::takeJournal() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_journal, {});
}

void FakeGpuDevice::addCompletion(Task completion) {
    const std::lock_guard lock(m_mutex);
    m_completions.push_back(std::move(completion));
}

void FakeGpuDevice::committed() {
    if (finishesAtOnce)
        finish();
}

void FakeGpuDevice::finish() {
    std::vector<Task> completions;
    {
        const std::lock_guard lock(m_mutex);
        completions.swap(m_completions);
    }
    for (const Task& completion : completions)
        completion();
}

void FakeRenderPeer::draw() {
    if (const auto listener = delegate.lock())
        listener->drawInView(static_cast<RenderView&>(view));
}

void FakeRenderPeer::resizeDrawable(const Size& pixels) {
    if (const auto listener = delegate.lock())
        listener->drawableSizeWillChange(static_cast<RenderView&>(view), pixels);
}

std::unique_ptr<RenderViewPeer> FakeGpu::makeRenderPeer(View& view) {
    auto peer = std::make_unique<FakeRenderPeer>(view);
    newest = peer.get();
    return peer;
}

} // namespace kestrin::test
