#include "bridge/AppJSONStack.h"
#include "bridge/KestrinAppBridge.h"
#include "bridge/KestrinWebEventController.h"
#include "bridge/KestrinWebView.h"
#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"
#include "tracking/CVManager.h"
#include "ui/SdkLoadingView.h"

#include <array>
#include <utility>

namespace kestrin {

/// Which handler runs for which web event, in the order of registration.
struct KestrinView::Handlers {
    std::int32_t event;
    void (KestrinView::*handler)(const boost::json::object&);

    static constexpr auto all() {
        return std::to_array<Handlers>({
            {0, &KestrinView::onDeviceInfo},         {1, &KestrinView::onWebGLReady},
            {2, &KestrinView::onStartAREngine},      {3, &KestrinView::onStopAREngine},
            {4, &KestrinView::onPauseAREngine},      {5, &KestrinView::onResumeAREngine},
            {6, &KestrinView::onOpenExternalUrl},    {7, &KestrinView::onRequestApplication},
            {9, &KestrinView::onForceLoseTracking},  {10, &KestrinView::onCaptureScreenshot},
            {18, &KestrinView::onCaptureScreenshot}, {21, &KestrinView::onShare},
            {11, &KestrinView::onStartMarkerless},   {13, &KestrinView::onStartMarkerlessPlacement},
            {14, &KestrinView::onScanMarker},        {17, &KestrinView::onScanMarkerSnap},
            {15, &KestrinView::onChangeApp},         {19, &KestrinView::onStartQRScanner},
            {20, &KestrinView::onStopQRScanner},
        });
    }
};

void KestrinView::setup(const std::optional<KestrinSettings>& settings) {
    if (divertToMain([self = shared(), settings] {
            log("KestrinView - setup - Diverting call to main thread. Expect delayed results.");
            self->setup(settings);
        }))
        return;
    log("KestrinView - setup - Running Initial engine setup.");
    m_Settings = KestrinSettings::initWithSettings(settings ? &*settings : nullptr);
    sdkLoadingView->setBGImage(m_Settings.getLoadingBackgroundImage());
    sdkLoadingView->show();
    syncFeatureFlags();
    if (!m_WebView) {
        hold(m_WebView, std::make_shared<KestrinWebView>());
        m_WebView->onPageLost([weakly = weak()] {
            if (const auto self = weakly.lock())
                self->recoverPage();
        });
    }
    if (!m_EventController)
        hold(m_EventController, KestrinWebEventController::initWithMain(m_WebView));
    if (!m_JsonStack)
        m_JsonStack = AppJSONStack::initWithView(m_WebView);
    m_AppBridge = KestrinAppBridge::initWith(m_JsonStack, m_Settings);
    registerCallbacks();
}

void KestrinView::syncFeatureFlags() {
    KestrinFeatureFlags::getInstance()->sync(m_Settings.getHostUrl(), m_Settings.getApplicationID());
}

void KestrinView::registerCallbacks() {
    if (!m_EventController) {
        log("KestrinView - registerCallbacks - Event framework not initialised. Expect wrong logical "
            "results.");
        return;
    }
    if (m_isEventRegistered) {
        log("KestrinView - registerCallbacks - Events already added for this instance. Continuing happily.");
        return;
    }
    log("KestrinView - registerCallbacks - Registering callback events. This only needs to happen once per "
        "instance.");
    m_isEventRegistered = true;
    for (const auto& [event, handler] : Handlers::all())
        registerForEventCallback(event, [weakly = weak(), handler = handler](const auto& data) {
            if (const auto self = weakly.lock())
                (self.get()->*handler)(data);
        });
    observeApplication();
}

void KestrinView::registerForEventCallback(std::int32_t event, EventCallback callback) {
    if (!m_EventController) {
        log("KestrinView - registerForEventCallback - Event framework not initialised. Run setup() before "
            "registering for event callbacks.");
        return;
    }
    m_EventController->registerForEventCallback(event, std::move(callback));
}

void KestrinView::destroy() {
    if (divertToMain([self = shared()] {
            log("KestrinView - destroy - Diverting call to main thread. Expect delayed results.");
            self->destroy();
        }))
        return;
    log("KestrinView - destroy - Performing instance destruction. Run setup() again to continue re-using "
        "this instance.");
    hide();
    if (m_isEventRegistered)
        ignoreApplication();
    if (m_EventController) {
        m_EventController->destroy();
        hold(m_EventController, std::shared_ptr<KestrinWebEventController>());
    }
    if (m_WebView)
        m_WebView->clear();
    if (m_CV)
        m_CV->pause();
    m_isEventRegistered = false;
    waitFor(std::nullopt);
}

} // namespace kestrin
