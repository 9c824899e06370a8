#pragma once

#include "bridge/KestrinWebView.h"
#include "bridge/PageFrameListener.h"
#include "support/FakePlatform.h"

#include <memory>

namespace kestrin::test {

struct CountingFrameListener : PageFrameListener {
    void signal() override { ++signals; }
    int signals = 0;
};

/// A web view host, prepared when the test says.
struct WebViewTest : PlatformTest {
    void prepare() { webView->prepare(frames); }
    FakeWebViewPeer& page() { return *system->webToolkit.newest; }

    std::shared_ptr<KestrinWebView> webView = std::make_shared<KestrinWebView>();
    std::shared_ptr<CountingFrameListener> frames = std::make_shared<CountingFrameListener>();
};

} // namespace kestrin::test
