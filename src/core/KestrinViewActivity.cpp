#include "core/KestrinView.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "tracking/CVManager.h"

namespace kestrin {

using namespace platform;

void KestrinView::pause() {
    if (const auto cv = held(m_CV))
        cv->pause();
    evaluate("window.__KRJ_Native_IN.onNativeResign();");
    m_isUserPaused = true;
}

void KestrinView::resume() {
    const auto cv = held(m_CV);
    if (!m_isSystemPaused && cv) {
        cv->resume();
        cv->startCamera();
    }
    evaluate("window.__KRJ_Native_IN.onNativeActivate();");
    m_isUserPaused = false;
}

void KestrinView::observeApplication() {
    NotificationCenter& center = platform::platform().application().notifications();
    const auto observe = [&](const char* name, void (KestrinView::*handler)(const Notification&)) {
        center.addObserver(this, name, [weakly = weak(), handler](const Notification& notification) {
            if (const auto self = weakly.lock())
                (self.get()->*handler)(notification);
        });
    };
    observe(kWillResignActive, &KestrinView::appWillResignActive);
    observe(kWillTerminate, &KestrinView::appWillTerminate);
    observe(kDidBecomeActive, &KestrinView::appActivated);
    observe(kDidEnterBackground, &KestrinView::appDeactivated);
}

void KestrinView::ignoreApplication() {
    NotificationCenter& center = platform::platform().application().notifications();
    for (const char* name : {kWillResignActive, kWillTerminate, kDidBecomeActive, kDidEnterBackground})
        center.removeObserver(this, name);
}

void KestrinView::appWillResignActive(const Notification&) {
    log("KestrinView - appWillResignActive");
    if (isPhotoAccessMinimize) {
        log("KestrinView - appWillResignActive - Blocked event due to camera access");
        return;
    }
    evaluate("window.__KRJ_Native_IN.onNativeResign();");
}

void KestrinView::appActivated(const Notification&) {
    log("KestrinView - appActivated");
    if (isPhotoAccessMinimize) {
        log("KestrinView - appActivated - Blocked event due to camera access");
        return;
    }
    if (!m_isUserPaused)
        evaluate("window.__KRJ_Native_IN.onNativeActivate();");
}

void KestrinView::appDeactivated(const Notification&) {
    log("KestrinView - appDeactivated");
    evaluate("window.__KRJ_Native_IN.onNativeEnterBackground();");
}

void KestrinView::appWillTerminate(const Notification&) {
    if (m_isEventRegistered)
        ignoreApplication();
}

} // namespace kestrin
