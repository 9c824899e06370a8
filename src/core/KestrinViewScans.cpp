#include "bridge/AppJSONStack.h"
#include "core/KestrinView.h"
#include "platform/Platform.h"
#include "services/KestrinQRScanner.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/Numbers.h"
#include "services/util/SystemLevel.h"
#include "tracking/CVManager.h"

#include <boost/json.hpp>

#include <utility>

namespace kestrin {

using platform::Image;

namespace json = boost::json;

namespace {

constexpr double kSnapSeconds = 2;       // for which a snap looks for a code
constexpr double kNativeSnapPause = 0.1; // seconds between two looks for a trigger
constexpr int kLastAttempt = 7;          // from 0
constexpr std::int32_t kDefault = -1;
constexpr double kScanningLevel = 11.0;

/// The pixels of the picture that the page asks for.
Image cropFor(const json::object& event, const Image& picture) {
    const auto width = float(picture.size().width), height = float(picture.size().height);
    const auto side = [&](std::string_view name, float fallback) {
        const auto asked = wholeNumberOf(findMember(event, {"data", name})).value_or(kDefault);
        return asked == kDefault ? saturatingCast<std::int32_t>(double(fallback)) : asked;
    };
    return KestrinUtil::cropImage(picture, side("startX", width * 0.07F), side("startY", height * 0.27F),
                                  side("width", width * 0.84F), side("height", height * 0.3F));
}

json::object found(const std::string& id, const char* type) { return {{"id", id}, {"type", type}}; }

} // namespace

/// Where a picture is sent to: what the page says, else the application's server.
std::string KestrinView::lookUpAddress(const json::object& event, const char* path) const {
    const auto own = textOf(findMember(event, {"data", "postURL"}));
    return own ? *own : format("%@/%@", m_Settings.getHostUrl(), path);
}

void KestrinView::sendScanResult(json::value rawData, json::value error) {
    const auto stack = m_JsonStack->push("ScanMarkerResult");
    m_JsonStack->pushVar("rawData", std::move(rawData), stack);
    m_JsonStack->pushVar("error", std::move(error), stack);
    m_JsonStack->deploy(stack, true);
}

void KestrinView::onScanMarker(const json::object& event) {
    const Image picture = m_CV ? m_CV->getScreenshot() : Image();
    KestrinUtil::sendAsyncImageRequest(
        lookUpAddress(event, "api/v2/triggertext/find"), cropFor(event, picture),
        [weakly = weak()](std::optional<json::value> answer) {
            if (const auto self = weakly.lock())
                self->sendScanResult(answer ? std::move(*answer) : json::value("none"), json::value(""));
        });
}

void KestrinView::onScanMarkerSnap(const json::object& event) {
    if (KestrinQRScanner::getInstance()->supported())
        qrSnap();
    else if (CVManager::checkARKitImageTrackerSupport())
        nativeSnap(0);
    else
        serverSnap(event);
}

void KestrinView::qrSnap() {
    const auto scanner = KestrinQRScanner::getInstance();
    if (!systemIsAtLeast(kScanningLevel) || scanner->wantsScan())
        return;
    scanner->scan([weakly = weak()](const std::string& text) {
        log("Snapped QR Code - %@", text);
        if (const auto self = weakly.lock())
            self->sendScanResult(found(text, "qrcode"), json::value(""));
    });
    platform::platform().dispatch().mainAfter(kSnapSeconds, [scanner] {
        if (scanner->wantsScan())
            scanner->cancelScan();
    });
}

void KestrinView::nativeSnap(int attempt) {
    if (const auto trigger = m_CV ? m_CV->snapMarker() : std::nullopt) {
        sendScanResult(found(*trigger, "trigger"), json::value(""));
        return;
    }
    platform::platform().dispatch().mainAfter(kNativeSnapPause, [weakly = weak(), attempt] {
        const auto self = weakly.lock();
        if (self && attempt < kLastAttempt)
            self->nativeSnap(attempt + 1);
        else if (self)
            self->sendScanResult(json::value("none"), json::value("null"));
    });
}

void KestrinView::serverSnap(const json::object& event) {
    const json::value* const application = findMember(event, {"data", "appId"});
    const json::object parameters{{"application_id", isPresent(application)
                                                         ? *application
                                                         : textOrNull(m_Settings.getApplicationID())}};
    KestrinUtil::sendAsyncImageRequestWithParams(lookUpAddress(event, "api/v2/triggersnap/find"),
                                                 m_CV ? m_CV->getScreenshotLowRes() : Image(), &parameters,
                                                 [weakly = weak()](std::optional<json::value> answer) {
                                                     if (const auto self = weakly.lock())
                                                         self->answerServerSnap(std::move(answer));
                                                 });
}

void KestrinView::answerServerSnap(std::optional<json::value> answer) {
    const json::value* const whole = answer ? &*answer : nullptr;
    if (const json::value* const error = findMember(whole, {"error"}))
        sendScanResult(json::value("none"), *error);
    else if (!whole || findMember(whole, {"errors"}))
        sendScanResult(json::value("none"), json::value("null"));
    else
        sendScanResult(std::move(*answer), json::value(""));
}

void KestrinView::onStartQRScanner(const json::object&) {
    if (!systemIsAtLeast(kScanningLevel))
        return;
    KestrinQRScanner::getInstance()->scan([weakly = weak()](const std::string& text) {
        const auto self = weakly.lock();
        if (!self)
            return;
        const auto stack = self->m_JsonStack->push("QRScannerResult");
        self->m_JsonStack->pushVar("text", json::value(text), stack);
        self->m_JsonStack->deploy(stack, true);
    });
}

void KestrinView::onStopQRScanner(const json::object&) {
    const auto scanner = KestrinQRScanner::getInstance();
    scanner->stopRealtimeScan();
    scanner->cancelScan();
}

} // namespace kestrin
