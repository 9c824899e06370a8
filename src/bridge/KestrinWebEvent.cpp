#include "bridge/KestrinWebEvent.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace kestrin {

namespace {

constexpr std::array<std::string_view, 22> kNames{
    "onRequestSDKDeviceInfo",
    "onWebGLReady",
    "onStartAREngine",
    "onStopAREngine",
    "onPauseAREngine",
    "onResumeAREngine",
    "onOpenExternalUrl",
    "onRequestApplication",
    "onEnableTriggers",
    "onForceLoseTracking",
    "onCaptureScreenshot",
    "onStartMarkerless",
    "onSendAnalytics",
    "onStartMarkerlessPlacement",
    "onScanMarker",
    "onChangeApp",
    "onWebUpdate",
    "onScanTriggerSnap",
    "onCaptureScreenshotShare",
    "onStartQRScanner",
    "onStopQRScanner",
    "onShare",
};

} // namespace

std::ptrdiff_t KestrinWebEvent::getEventCount() { return std::ptrdiff_t(kNames.size()); }

std::ptrdiff_t KestrinWebEvent::stringToEvent(std::optional<std::string_view> name) {
    const auto found = name ? std::ranges::find(kNames, *name) : kNames.end();
    return found == kNames.end() ? kNotFound : found - kNames.begin();
}

std::string_view KestrinWebEvent::eventToString(std::ptrdiff_t event) {
    if (event < 0 || event >= getEventCount())
        throw std::out_of_range("KestrinWebEvent::eventToString");
    return kNames[std::size_t(event)];
}

} // namespace kestrin
