#include "linux/drawing/GlGpu.h"

#include "linux/drawing/GlDevice.h"
#include "linux/drawing/RenderPeer.h"

namespace kestrin::gtk {

std::shared_ptr<platform::GpuDevice> GlGpu::probe() const {
    GFailure failure;
    if (gdk_display_prepare_gl(gdk_display_get_default(), failure.out()))
        return std::make_shared<GlDevice>(m_log);
    m_log->write(std::string("Kestrin - OpenGL is not available: ") + failure.text());
    return nullptr;
}

std::shared_ptr<platform::GpuDevice> GlGpu::defaultDevice() {
    if (!m_device)
        m_device = probe();
    return *m_device;
}

std::unique_ptr<platform::RenderViewPeer> GlGpu::makeRenderPeer(platform::View& view) {
    return std::make_unique<RenderPeer>(view, m_log);
}

} // namespace kestrin::gtk
