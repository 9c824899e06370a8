#include "bridge/AppJSONStack.h"
#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "tracking/CVManager.h"
#include "ui/SdkLoadingView.h"

#include <boost/json/value.hpp>

namespace kestrin {

namespace json = boost::json;

namespace {

std::string appDetailScript() {
    return format("window.__KRJ_Native_IN.onAppDetailUpdate(atob('%@'));",
                  KestrinFeatureFlags::getInstance()->getAppDetailBase64());
}

std::string withoutExternalMark(std::string url) {
    constexpr std::string_view kMark = ":external";
    for (auto at = url.find(kMark); at != std::string::npos; at = url.find(kMark, at))
        url.erase(at, kMark.size());
    return url;
}

} // namespace

void KestrinView::onDeviceInfo(const json::object&) {
    evaluate(appDetailScript());
    const platform::Device device = platform::platform().device();
    const auto intent = KestrinSettings::externalIntent();
    const auto stack = m_JsonStack->push("DeviceInfo");
    const auto put = [&](std::string_view key, json::value value) {
        m_JsonStack->pushVar(key, std::move(value), stack);
    };
    put("name", json::value(device.name));
    put("systemName", json::value(device.systemName));
    put("model", json::value(device.model));
    put("systemVersion", json::value(device.systemVersion));
    put("sdkVersion", textOrNull(getVersion()));
    put("engine", json::value("NATIVEAR"));
    put("urlParams", isPresent(intent.get()) ? *intent : json::value("null"));
    if (change_from && change_into) {
        put("app_change_from", json::value(*change_from));
        put("app_change_into", json::value(*change_into));
    }
    m_JsonStack->deploy(stack, true);
}

void KestrinView::onWebGLReady(const json::object& event) {
    waitFor(std::nullopt);
    sdkLoadingView->hide();
    onDeviceInfo(event);
}

/// Runs an engine command of the page, unless the host has paused.
template <class Action>
void KestrinView::obeyPage(const char* acting, const char* ignored, Action action) {
    if (m_isUserPaused) {
        logLine(ignored);
        return;
    }
    logLine(acting);
    if (m_CV)
        action(*m_CV);
}

void KestrinView::onStartAREngine(const json::object&) {
    m_isSystemPaused = true;
    log("KestrinView - onStartAREngine - UI template call");
    if (m_CV) {
        m_CV->pause();
        m_CV->stopCamera();
    }
    KestrinFeatureFlags::getInstance()->syncCallback([weakly = weak()] {
        const auto self = weakly.lock();
        if (!self)
            return;
        self->evaluate(appDetailScript());
        self->evaluate(format("window.__KRJ_Native_IN.onFeatureFlagsUpdate(atob('%@'));",
                              KestrinFeatureFlags::getInstance()->toJson()));
    });
}

void KestrinView::onStopAREngine(const json::object&) {
    m_isSystemPaused = true;
    obeyPage("KestrinView - onStopAREngine - UI template call",
             "KestrinView - onStopAREngine - UI template call ignored. User Paused.",
             [](CVManager& cv) { cv.pause(); });
}

void KestrinView::onPauseAREngine(const json::object&) {
    m_isSystemPaused = true;
    obeyPage("KestrinView - onPauseAREngine - UI template call",
             "KestrinView - onPauseAREngine - UI template call ignored. User Paused.",
             [](CVManager& cv) { cv.pause(); });
}

void KestrinView::onResumeAREngine(const json::object&) {
    m_isSystemPaused = false;
    obeyPage("KestrinView - onResumeAREngine - UI template call",
             "KestrinView - onResumeAREngine - UI template call ignored. User Paused.", [](CVManager& cv) {
                 cv.resume();
                 cv.startCamera();
             });
}

void KestrinView::onStartMarkerless(const json::object&) {
    m_isSystemPaused = false;
    obeyPage("KestrinView - onStartMarkerless - UI template call",
             "KestrinView - onStartMarkerless - UI template call ignored. User Paused.",
             [](CVManager& cv) { cv.startMarkerlessTracking(); });
}

void KestrinView::onStartMarkerlessPlacement(const json::object&) {
    m_isSystemPaused = false;
    obeyPage("KestrinView - onStartMarkerlessPlacement - UI template call",
             "KestrinView - onStartMarkerlessPlacement - UI template call ignored. User Paused.",
             [](CVManager& cv) { cv.startMarkerlessPlacement(); });
}

void KestrinView::onOpenExternalUrl(const json::object& event) {
    const auto url = withoutExternalMark(textOf(findMember(event, {"data", "url"})).value_or(""));
    if (!url.empty())
        platform::platform().application().openUrl(url);
}

void KestrinView::onRequestApplication(const json::object&) {
    m_JsonStack->deployDirect(m_Settings.getTemplateCommand());
}

void KestrinView::onForceLoseTracking(const json::object&) {
    if (m_CV && KestrinFeatureFlags::getInstance()->containsFlag("triggerlock"))
        m_CV->cleanContext();
}

void KestrinView::onChangeApp(const json::object& event) {
    const auto key = textOf(findMember(event, {"data", "data"}));
    change_from = m_Settings.getApplicationID();
    m_Settings = KestrinSettings::initWithKeyString(key);
    const auto application = m_Settings.getApplicationID();
    log("KestrinView - onChangeApp - changing application - %@", application);
    syncFeatureFlags();
    change_into = application;
    sdkLoadingView->show();
    if (m_CV)
        m_CV->pause();
    start();
}

} // namespace kestrin
