#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/Url.h"
#include "ui/SdkLoadingView.h"

namespace kestrin {

namespace {

constexpr double kPatience = 8; // seconds

std::string textFor(KestrinView::StartDelay delay, const std::string& url) {
    const auto host = urlHost(url).value_or("the server");
    switch (delay) {
    case KestrinView::StartDelay::server:
        return format("Still waiting for %@ to answer.", host);
    case KestrinView::StartDelay::unreachableServer:
        return format("No answer from %@. Please check the internet connection and start again.", host);
    case KestrinView::StartDelay::cameraAccess:
        return "Waiting for your permission to use the camera.";
    case KestrinView::StartDelay::page:
        return format("Still loading the experience from %@.", host);
    }
    return {};
}

} // namespace

/// The start goes on, or ends: from now on it waits for `what`.
void KestrinView::waitFor(std::optional<StartDelay> what) {
    m_waitsFor = what;
    m_patience.reset();
    if (what)
        // Repeating, since a server may fail long after it was first reported late.
        m_patience = platform::platform().dispatch().every(kPatience, [weakly = weak()] {
            if (const auto self = weakly.lock())
                self->reportWait();
        });
    tellDelay(std::nullopt);
}

void KestrinView::reportWait() {
    const bool gaveUp = m_waitsFor == StartDelay::server && KestrinFeatureFlags::getInstance()->synced();
    tellDelay(gaveUp ? StartDelay::unreachableServer : m_waitsFor);
}

void KestrinView::tellDelay(std::optional<StartDelay> delay) {
    if (delay == m_delay)
        return;
    m_delay = delay;
    const std::string text = delay ? textFor(*delay, m_Settings.getTemplateUrl()) : "";
    sdkLoadingView->setMessage(text);
    if (delay)
        log("KestrinView - start - %@", text);
    if (const auto callback = m_startDelayed)
        callback(delay);
}

} // namespace kestrin
