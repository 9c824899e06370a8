#pragma once

#include "platform/Gpu.h"
#include "support/FakePeer.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::test {

struct FakeGpuBuffer : platform::GpuBuffer {
    void write(std::span<const float> v) override { values.assign(v.begin(), v.end()); }
    void setLabel(const std::string&) override {}
    std::vector<float> values;
};

struct FakeGpuTexture : platform::GpuTexture {
    FakeGpuTexture(platform::PixelBufferRef b, platform::GpuFormat f) : buffer(std::move(b)), format(f) {}
    const platform::PixelBufferRef buffer;
    const platform::GpuFormat format;
};

/// Makes recording things, and no textures if the test says so. Everything drawn is written to `journal`, a
/// line a call: "makeCommandBuffer", "label NAME", "makeEncoder", "push NAME", "pop", "cull none",
/// "pipeline", "depth", "vertices INDEX", "texture INDEX", "strip FIRST COUNT", "end", "present", "commit".
class FakeGpuDevice : public platform::GpuDevice,
                      public platform::GpuTextureCache,
                      public platform::GpuCommandQueue,
                      public std::enable_shared_from_this<FakeGpuDevice> {
  public:
    std::shared_ptr<platform::GpuBuffer> makeBuffer(std::span<const float> values) override {
        buffer = std::make_shared<FakeGpuBuffer>();
        buffer->write(values);
        return buffer;
    }
    platform::GpuResult<platform::GpuLibrary> makeLibrary(const std::string&, const std::string&) override {
        return std::make_shared<platform::GpuLibrary>();
    }
    platform::GpuResult<platform::GpuPipeline> makePipeline(const platform::GpuPipelineDescriptor&) override {
        return std::make_shared<platform::GpuPipeline>();
    }
    std::shared_ptr<platform::GpuDepthState> makeDepthState(const platform::GpuDepthDescriptor&) override {
        return std::make_shared<platform::GpuDepthState>();
    }
    std::shared_ptr<platform::GpuTextureCache> makeTextureCache() override { return shared_from_this(); }
    std::shared_ptr<platform::GpuCommandQueue> makeCommandQueue() override { return shared_from_this(); }
    std::shared_ptr<platform::GpuTexture> makeTexture(platform::PixelBufferRef picture,
                                                      platform::GpuFormat format, int, int, int) override {
        return texturesFail ? nullptr : std::make_shared<FakeGpuTexture>(std::move(picture), format);
    }
    std::unique_ptr<platform::GpuCommandBuffer> makeCommandBuffer() override {
        write("makeCommandBuffer");
        return std::make_unique<CommandBuffer>(shared_from_this());
    }

    std::vector<std::string> takeJournal() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_journal, {});
    }
    /// The GPU is done with all that was committed: calls the completions.
    void finish() {
        std::unique_lock lock(m_mutex);
        const auto completions = std::exchange(m_completions, {});
        lock.unlock();
        for (const platform::Task& completion : completions)
            completion();
    }

    bool texturesFail = false;
    bool finishesAtOnce = true;                            ///< completions run inside commit
    std::shared_ptr<FakeGpuBuffer> buffer;                 ///< made last
    std::vector<std::shared_ptr<FakeGpuTexture>> drawn{4}; ///< by fragment texture index, as last set

  private:
    struct Encoder : platform::GpuEncoder {
        explicit Encoder(FakeGpuDevice& d) : device(d) {}
        void setLabel(const std::string& label) override { device.write("label " + label); }
        void pushDebugGroup(const std::string& name) override { device.write("push " + name); }
        void popDebugGroup() override { device.write("pop"); }
        void setCullModeNone() override { device.write("cull none"); }
        void setPipeline(const platform::GpuPipeline&) override { device.write("pipeline"); }
        void setDepthState(const platform::GpuDepthState&) override { device.write("depth"); }
        void setVertexBuffer(const platform::GpuBuffer&, int, int index) override {
            device.write("vertices " + std::to_string(index));
        }
        void setFragmentTexture(std::shared_ptr<platform::GpuTexture> texture, int index) override {
            device.write("texture " + std::to_string(index));
            device.drawn.at(std::size_t(index)) = std::dynamic_pointer_cast<FakeGpuTexture>(texture);
        }
        void drawTriangleStrip(int first, int count) override {
            device.write("strip " + std::to_string(first) + " " + std::to_string(count));
        }
        void endEncoding() override { device.write("end"); }
        FakeGpuDevice& device;
    };
    struct CommandBuffer : platform::GpuCommandBuffer {
        explicit CommandBuffer(std::shared_ptr<FakeGpuDevice> d) : device(std::move(d)) {}
        void setLabel(const std::string& label) override { device->write("label " + label); }
        void addCompletion(platform::Task completion) override {
            const std::lock_guard lock(device->m_mutex);
            device->m_completions.push_back(std::move(completion));
        }
        std::unique_ptr<platform::GpuEncoder> makeEncoder(platform::RenderView&) override {
            device->write("makeEncoder");
            return std::make_unique<Encoder>(*device);
        }
        void present(platform::RenderView&) override { device->write("present"); }
        void commit() override {
            device->write("commit");
            if (device->finishesAtOnce)
                device->finish();
        }
        std::shared_ptr<FakeGpuDevice> device;
    };
    void write(const std::string& line) {
        const std::lock_guard lock(m_mutex);
        m_journal.push_back(line);
    }

    std::mutex m_mutex;
    std::vector<std::string> m_journal;
    std::vector<platform::Task> m_completions;
};

/// Plays the drawing thread: a frame is drawn when the test says, on the thread it says it.
struct FakeRenderPeer : FakePeer<platform::RenderViewPeer> {
    explicit FakeRenderPeer(platform::View& v) : view(v) {}
    void setDelegate(std::weak_ptr<platform::RenderViewDelegate> value) override {
        delegate = std::move(value);
    }
    void setSettings(const platform::RenderViewSettings& value) override { settings = value; }
    bool hasRenderPass() const override { return true; }
    platform::Image newestPicture() override { return picture; }

    void draw() {
        if (const auto listener = delegate.lock())
            listener->drawInView(static_cast<platform::RenderView&>(view));
    }
    void resizeDrawable(const platform::Size& pixels) {
        delegate.lock()->drawableSizeWillChange(static_cast<platform::RenderView&>(view), pixels);
    }

    platform::View& view;
    std::weak_ptr<platform::RenderViewDelegate> delegate;
    platform::RenderViewSettings settings;
    platform::Image picture; ///< as presented last
};

class FakeGpu : public platform::Gpu {
  public:
    std::shared_ptr<platform::GpuDevice> defaultDevice() override { return device; }
    std::unique_ptr<platform::RenderViewPeer> makeRenderPeer(platform::View& view) override {
        auto peer = std::make_unique<FakeRenderPeer>(view);
        newest = peer.get();
        return peer;
    }

    std::shared_ptr<FakeGpuDevice> device = std::make_shared<FakeGpuDevice>(); ///< null: no GPU interface
    FakeRenderPeer* newest = nullptr;                                          ///< of the view made last
};

} // namespace kestrin::test
