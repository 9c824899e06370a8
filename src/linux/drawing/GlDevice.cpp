#include "linux/drawing/GlDevice.h"

#include "linux/drawing/GlBuffer.h"
#include "linux/drawing/GlCommandBuffer.h"
#include "linux/drawing/GlPipeline.h"
#include "linux/drawing/GlTexture.h"
#include "linux/toolkit/Resources.h"

namespace kestrin::gtk {

using platform::GpuResult;

std::shared_ptr<platform::GpuBuffer> GlDevice::makeBuffer(std::span<const float> values) {
    return std::make_shared<GlBuffer>(values);
}

GpuResult<platform::GpuLibrary> GlDevice::makeLibrary(const std::string& name, const std::string& type) {
    auto text = resourceText("shaders/" + name + "." + type);
    if (!text)
        return "there is no shader library " + name + "." + type;
    return std::make_shared<GlLibrary>(std::move(*text));
}

GpuResult<platform::GpuPipeline> GlDevice::makePipeline(const platform::GpuPipelineDescriptor& descriptor) {
    auto library = std::dynamic_pointer_cast<const GlLibrary>(descriptor.library);
    if (!library)
        return "there is no shader library";
    for (const std::string& function : {descriptor.vertexFunction, descriptor.fragmentFunction})
        if (!library->hasFunction(function))
            return "the shader library has no function " + function;
    if (descriptor.sampleCount != 1)
        return "a render view has one sample a pixel";
    return std::make_shared<GlPipeline>(descriptor, std::move(library), m_log);
}

std::shared_ptr<platform::GpuDepthState>
GlDevice::makeDepthState(const platform::GpuDepthDescriptor& descriptor) {
    const bool ignoresDepth = descriptor.compare == platform::GpuCompare::always && !descriptor.writes;
    return ignoresDepth ? std::make_shared<platform::GpuDepthState>() : nullptr;
}

std::shared_ptr<platform::GpuTextureCache> GlDevice::makeTextureCache() {
    return std::make_shared<GlTextureCache>();
}

std::shared_ptr<platform::GpuCommandQueue> GlDevice::makeCommandQueue() {
    return std::make_shared<GlCommandQueue>();
}

} // namespace kestrin::gtk
