#include "bridge/KestrinWebView.h"
#include "core/KestrinView.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "ui/SdkLoadingView.h"

#include <utility>

namespace kestrin {

namespace {
constexpr double kTooSoon = 10; // seconds
}

/// A page that is lost is loaded again, as at the start; one that is lost again at once would go on so for
/// ever.
void KestrinView::recoverPage() {
    if (!m_EventController)
        return; // destroyed: the page that was lost is the empty one
    const double now = platform::platform().dispatch().now();
    const auto before = std::exchange(m_pageLostAt, now);
    if (before && now - *before < kTooSoon) {
        log("KestrinView - recoverPage - The page's process has ended again within %i seconds. Giving it up.",
            int(kTooSoon));
        failStart(
            "Oops!",
            "The experience has stopped twice in a row. Please close it and start it again; if it stops "
            "again, this device may not have enough memory for it.",
            nullptr);
        return;
    }
    log("KestrinView - recoverPage - The page's process has ended. Loading the page again.");
    sdkLoadingView->show();
    waitFor(StartDelay::page);
    m_WebView->loadUrl(m_Settings.getTemplateUrl(), false);
}

} // namespace kestrin
