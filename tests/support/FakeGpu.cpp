#include "support/FakeGpu.h"

#include <utility>

namespace kestrin::test {

using namespace platform;

namespace {

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
        if (device->finishesAtOnce)
            device->finish();
    }
    std::shared_ptr<FakeGpuDevice> device;
};

} // namespace

std::shared_ptr<GpuBuffer> FakeGpuDevice::makeBuffer(std::span<const float> values) {
    buffer = std::make_shared<FakeGpuBuffer>();
    buffer->write(values);
    return buffer;
}

GpuResult<GpuLibrary> FakeGpuDevice::makeLibrary(const std::string&, const std::string&) {
    if (!libraryError.empty())
        return libraryError;
    return std::make_shared<GpuLibrary>();
}

GpuResult<GpuPipeline> FakeGpuDevice::makePipeline(const GpuPipelineDescriptor&) {
    if (!pipelineError.empty())
        return pipelineError;
    return std::make_shared<GpuPipeline>();
}

std::shared_ptr<GpuTexture> FakeGpuDevice::makeTexture(PixelBufferRef picture, GpuFormat format, int, int,
                                                       int) {
    return texturesFail ? nullptr : std::make_shared<FakeGpuTexture>(std::move(picture), format);
}

std::unique_ptr<GpuCommandBuffer> FakeGpuDevice::makeCommandBuffer() {
    write("makeCommandBuffer");
    return std::make_unique<CommandBuffer>(shared_from_this());
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

void FakeGpuDevice::finish() {
    std::vector<Task> completions;
    {
        const std::lock_guard lock(m_mutex);
        completions.swap(m_completions);
    }
    for (const Task& completion : completions)
        completion();
}

std::unique_ptr<RenderViewPeer> FakeGpu::makeRenderPeer(View& view) {
    auto peer = std::make_unique<FakeRenderPeer>(view);
    newest = peer.get();
    return peer;
}

} // namespace kestrin::test
