#include "core/KestrinView.h"

#include "bridge/KestrinWebView.h"
#include "core/KestrinNavigator.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"
#include "services/util/SystemLevel.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "tracking/CVManager.h"
#include "tracking/KestrinTriggerList.h"
#include "ui/ErrorPreviewView.h"
#include "ui/SdkLoadingView.h"

#include <utility>

namespace kestrin {

using platform::View;

KestrinView::KestrinView() = default;

std::shared_ptr<KestrinView> KestrinView::init() {
    auto view = platform::makeView<KestrinView>();
    view->construct();
    return view;
}

void KestrinView::construct() {
    // Shows the empty hierarchy on the way, which the view then takes back.
    resizeToScreenSize();
    setBackground(platform::kClear);
    m_isHidden = true;
    sdkLoadingView = SdkLoadingView::initWithFrame({});
    sdkLoadingView->addToParentView(shared());
    errorPreviewView = ErrorPreviewView::initWithFrame({});
    errorPreviewView->addToParentView(shared());
    errorPreviewView->hideInstant();
}

KestrinView::~KestrinView() {
    if (m_isEventRegistered)
        ignoreApplication();
    if (!m_CV)
        return;
    m_CV->removeAllDelegates();
    m_CV->pause();
    m_CV->detach();
}

std::shared_ptr<KestrinView> KestrinView::shared() {
    return std::static_pointer_cast<KestrinView>(shared_from_this());
}

std::weak_ptr<KestrinView> KestrinView::weak() { return shared(); }

bool KestrinView::isSupported() { return ARKitMarkerlessProcessor::isSupported(); }

std::optional<std::string> KestrinView::getVersion() {
    return platform::platform().storage().information("CFBundleShortVersionString");
}

void KestrinView::show() {
    if (divertToMain([self = shared()] {
            log("KestrinView - show - Diverting call to main thread. Expect delayed results.");
            self->show();
        }))
        return;
    log("KestrinView - show - Placing view hierarchy for display.");
    // Adding the camera picture reports the viewport, which comes back here through `resize`; the layers are
    // each added anew, so their order holds whoever ends first.
    if (const auto cv = held(m_CV))
        cv->addToParentView(shared());
    else
        log("KestrinView - show - AR View not initialised. Expect wrong visual results.");
    if (const auto triggers = triggerOverlay())
        triggers->addToParentView(shared());
    if (const auto web = held(m_WebView))
        web->addToParentView(shared());
    else
        log("KestrinView - show - UI View not initialised. Expect wrong visual results.");
    if (sdkLoadingView)
        sdkLoadingView->addToParentView(shared());
    else
        log("KestrinView - show - Load View not initialised. Expect wrong visual results.");
    if (errorPreviewView)
        errorPreviewView->addToParentView(shared());
    else
        log("KestrinView - show - Error View not initialised. Expect wrong visual results.");
    m_isHidden = false;
}

void KestrinView::hide() {
    if (divertToMain([self = shared()] {
            log("KestrinView - hide - Diverting call to main thread. Expect delayed results.");
            self->hide();
        }))
        return;
    log("KestrinView - hide - Removing view hierarchy from display.");
    if (const auto cv = held(m_CV))
        cv->removeFromParentView();
    else
        log("KestrinView - hide - AR View not initialised. Expect wrong visual results.");
    if (const auto triggers = triggerOverlay())
        triggers->removeFromParentView();
    if (const auto web = held(m_WebView))
        web->removeFromParentView();
    else
        log("KestrinView - hide - UI View not initialised. Expect wrong visual results.");
    if (sdkLoadingView)
        sdkLoadingView->removeFromParentView();
    else
        log("KestrinView - hide - Load View not initialised. Expect wrong visual results.");
    if (errorPreviewView)
        errorPreviewView->removeFromParentView();
    else
        log("KestrinView - hide - Error View not initialised. Expect wrong visual results.");
    m_isHidden = true;
}

std::shared_ptr<KestrinTriggerList> KestrinView::triggerOverlay() {
    return systemIsAtLeast(11.3) ? KestrinTriggerList::getInstance() : nullptr;
}

std::shared_ptr<View> KestrinView::getCameraView() const {
    const auto cv = held(m_CV);
    return cv ? cv->getRenderView() : nullptr;
}

std::shared_ptr<View> KestrinView::getContentView() const {
    const auto web = held(m_WebView);
    return web ? web->getView() : nullptr;
}

std::shared_ptr<View> KestrinView::getParentView() { return shared(); }

std::shared_ptr<KestrinNavigator> KestrinView::getNavigator() const {
    return KestrinNavigator::initWithContext(held(m_WebView));
}

void KestrinView::evaluate(std::string script) {
    if (const auto web = held(m_WebView))
        web->eval(std::move(script));
}

} // namespace kestrin
