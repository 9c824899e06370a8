#include "bridge/KestrinWebView.h"
#include "core/KestrinCVSession.h"
#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "core/config/LocalKeyString.h"
#include "services/KestrinPermission.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"
#include "tracking/CVManager.h"
#include "tracking/KestrinTriggerList.h"
#include "ui/ErrorPreviewView.h"

#include <utility>

namespace kestrin {

void KestrinView::startWithCallback(std::function<void()> failed) {
    if (!held(m_EventController)) {
        log("KestrinView - start - Cannot start since setup() has not been called.");
        return;
    }
    if (divertToMain([self = shared(), failed] {
            log("KestrinView - start - Diverting call to main thread. Expect delayed results.");
            self->startWithCallback(failed);
        }))
        return;
    log("KestrinView - start - Loading primary UI view.");
    errorPreviewView->hideInstant();
    if (!KestrinCVSession::isARSupported() && !KestrinCVSession::isSimulator()) {
        failStart("Uh Oh!",
                  "Sorry this device does not support this Augmented Reality experience. We are unable to "
                  "launch the experience.",
                  failed);
        return;
    }
    waitFor(StartDelay::server);
    KestrinFeatureFlags::getInstance()->syncCallback([weakly = weak(), failed = std::move(failed)] {
        if (const auto self = weakly.lock())
            self->loadTriggers(failed);
    });
}

void KestrinView::loadTriggers(const std::function<void()>& failed) {
    log("KestrinView - start - Synced Feature Flags, Init subsystems.");
    const auto triggers = KestrinTriggerList::getInstance();
    triggers->resync();
    if (KestrinTriggerList::wantsToSupport() && !KestrinCVSession::isMarkerARSupported()) {
        failStart("Uh Oh!",
                  "Sorry, this device needs to update its iOS software. We are unable to launch the app.",
                  failed);
        return;
    }
    triggers->loadFromAPIForARKit(m_Settings.getHostUrl(), m_Settings.getApplicationID());
    askForCamera(failed);
}

void KestrinView::askForCamera(const std::function<void()>& failed) {
    waitFor(StartDelay::cameraAccess);
    log("KestrinView - start - Asking camera access.");
    KestrinPermission::askCameraAccess(
        [weakly = weak()] {
            if (const auto self = weakly.lock())
                self->launch();
        },
        [weakly = weak(), failed] {
            const auto self = weakly.lock();
            if (!self)
                return;
            KestrinPermission::denyCameraMessage();
            self->failStart("Oops!",
                            "We don\u2019t have access to your camera and need this to make Augmented "
                            "Reality function. You can grant access in Settings.",
                            failed);
        });
}

void KestrinView::launch() {
    log("KestrinView - start - Camera access granted, proceeding.");
    if (!m_CV)
        makeManager();
    else if (!m_isUserPaused)
        m_CV->reset();
    if (KestrinFeatureFlags::getInstance()->containsFlag("local"))
        m_Settings = KestrinSettings::initWithKeyString(localKeyString());
    log("KestrinView - start - Launching WebView.");
    m_WebView->setInspectable(m_Settings.getDebugEnabled());
    m_WebView->loadUrl(m_Settings.getTemplateUrl(), false);
    show();
    waitFor(StartDelay::page);
}

void KestrinView::makeManager() {
    auto manager = CVManager::initWithKeys(nullptr);
    manager->addDelegate(shared());
    m_WebView->prepare(manager);
    hold(m_CV, std::move(manager));
}

void KestrinView::failStart(const char* title, const char* body, const std::function<void()>& failed) {
    waitFor(std::nullopt);
    errorPreviewView->setTitle(title, body);
    errorPreviewView->show();
    if (failed)
        failed();
}

} // namespace kestrin
