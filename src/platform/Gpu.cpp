#include "platform/Gpu.h"

#include "platform/Platform.h"

#include <utility>

namespace kestrin::platform {

RenderView::RenderView() : RenderView(platform().gpu().makeRenderPeer(*this)) {}

RenderView::RenderView(std::unique_ptr<RenderViewPeer> peer)
    : View(std::move(peer)), m_renderPeer(static_cast<RenderViewPeer&>(View::peer())),
      m_device(platform().gpu().defaultDevice()) {}

void RenderView::setDelegate(std::weak_ptr<RenderViewDelegate> delegate) {
    m_renderPeer.setDelegate(std::move(delegate));
}

void RenderView::setSettings(const RenderViewSettings& settings) {
    m_settings = settings;
    m_renderPeer.setSettings(settings);
}

} // namespace kestrin::platform
