#include "bridge/KestrinWebView.h"
#include "core/KestrinView.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"
#include "tracking/CVManager.h"
#include "tracking/KestrinTriggerList.h"
#include "ui/ErrorPreviewView.h"
#include "ui/KestrinCustomView.h"
#include "ui/SdkLoadingView.h"

namespace kestrin {

using platform::Screen;
using platform::Size;
using platform::View;

namespace {
constexpr double kViewportScale = 2; // whatever the screen's scale: pages count on it
}

void KestrinView::resize(double width, double height) {
    if (divertToMain([self = shared(), width, height] {
            log("KestrinView - resize - Diverting call to main thread. Expect delayed results.");
            self->resize(width, height);
        }))
        return;
    log("KestrinView - resize - w=%f h=%f", width, height);
    setFrame({frame().origin, {width, height}});
    const auto cv = held(m_CV);
    if (!m_isHidden && cv)
        cv->setViewport({width * kViewportScale, height * kViewportScale});
    clipToParent();
    hide();
    show();
}

void KestrinView::resizeToScreenSize() {
    if (divertToMain([self = shared()] {
            log("KestrinView - resizeToScreenSize - Diverting call to main thread. Expect delayed results.");
            self->resizeToScreenSize();
        }))
        return;
    const Screen screen = platform::platform().application().mainScreen();
    const auto scale = double(float(screen.nativeScale));
    resize(screen.size.width * scale, screen.size.height * scale);
}

void KestrinView::resizeToScreenSizeUnscaled() {
    // Diverted, it becomes the scaled operation; hosts have come to live with it.
    if (divertToMain([self = shared()] {
            log("KestrinView - resizeToScreenSize - Diverting call to main thread. Expect delayed results.");
            self->resizeToScreenSize();
        }))
        return;
    const Size screen = platform::platform().application().mainScreen().size;
    resize(screen.width, screen.height);
}

void KestrinView::toolkitResized(const Size& size) {
    const bool isNew = size != m_toolkitSize && size.width > 0 && size.height > 0;
    if (!isNew)
        return;
    m_toolkitSize = size;
    if (m_isHidden) {
        View::toolkitResized(size);
        return;
    }
    // Not now: the toolkit is in the middle of its layout, and `resize` rebuilds the hierarchy.
    platform::platform().dispatch().mainAsync([weakly = weak()] {
        if (const auto self = weakly.lock())
            self->followToolkit();
    });
}

void KestrinView::followToolkit() {
    const bool follows = m_toolkitSize == Size() || m_toolkitSize == frame().size;
    if (follows)
        return;
    if (m_isHidden)
        View::toolkitResized(m_toolkitSize);
    else
        resize(m_toolkitSize.width, m_toolkitSize.height);
}

void KestrinView::addToParentView(const std::shared_ptr<View>& parent) {
    if (!parent) {
        log("Kestrin::Content View::addToSubview::Cannot add since view argument is NULL.");
        return;
    }
    if (!divertToMain([self = shared(), parent] { self->addToParentView(parent); }))
        KestrinCustomView::addClipConstraints(shared(), parent);
}

void KestrinView::removeFromParentView() {
    if (!divertToMain([self = shared()] { self->removeFromParentView(); }))
        KestrinCustomView::removeFromParent(shared());
}

void KestrinView::clipToParent() {
    if (divertToMain([self = shared()] { self->clipToParent(); }))
        return;
    log("Kestrin - Kestrin View - Re-Clipping child views.");
    KestrinCustomView::clipToParent(shared());
    if (const auto cv = held(m_CV))
        cv->clipToParent();
    if (const auto triggers = triggerOverlay())
        triggers->clipToParent();
    if (const auto web = held(m_WebView))
        web->clipToParent();
    if (sdkLoadingView)
        sdkLoadingView->clipToParent();
    if (errorPreviewView)
        errorPreviewView->clipToParent();
}

} // namespace kestrin
