#pragma once

#include "platform/Platform.h"
#include "platform/WebView.h"
#include "support/FakePeer.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestrin::test {

/// Keeps what it is asked to load and evaluate, and plays the page and the web engine. Thread: main.
struct FakeWebViewPeer : FakePeer<platform::WebViewPeer> {
    explicit FakeWebViewPeer(platform::WebViewConfiguration c) : configuration(std::move(c)) {}

    void load(const platform::UrlRequest& request) override { loads.push_back(request); }
    void evaluate(std::string_view script) override { scripts.emplace_back(script); }
    void setOpaque(bool) override {}
    void setScroll(const platform::ScrollSettings&) override {}
    void setNavigationDelegate(std::weak_ptr<platform::NavigationDelegate> value) override {
        navigation = std::move(value);
    }
    void setUiDelegate(std::weak_ptr<platform::WebUiDelegate>) override {}
    void setInspectable(bool value) override { inspectable = value; }

    /// The page posts `body` to a named handler; false when nobody listens under that name.
    bool post(const std::string& handler, std::string_view body) {
        const auto found = configuration.scriptMessageHandlers.find(handler);
        const auto listener =
            found == configuration.scriptMessageHandlers.end() ? nullptr : found->second.lock();
        if (listener)
            listener->didReceiveScriptMessage(handler, body);
        return listener != nullptr;
    }
    /// The page wants to go somewhere: asks with preferences from feature level 13.0 on, as systems do.
    platform::NavigationPolicy navigate(const std::string& url, bool inOwnWebView = true) {
        const auto delegate = navigation.lock();
        contentMode = platform::ContentMode::recommended;
        const platform::NavigationAction action{url, inOwnWebView};
        return platform::platform().featureLevel() >= 13.0
                   ? delegate->decideNavigationAction(action, contentMode)
                   : delegate->decideNavigationAction(action);
    }

    platform::WebViewConfiguration configuration;
    std::vector<platform::UrlRequest> loads;
    std::vector<std::string> scripts;
    bool inspectable = false;
    platform::ContentMode contentMode = platform::ContentMode::recommended; ///< as the last question left it
    std::weak_ptr<platform::NavigationDelegate> navigation;
};

class FakeWebToolkit : public platform::WebToolkit {
  public:
    std::unique_ptr<platform::WebViewPeer>
    makeWebPeer(platform::View&, const platform::WebViewConfiguration& configuration) override {
        auto peer = std::make_unique<FakeWebViewPeer>(configuration);
        newest = peer.get();
        ++made;
        return peer;
    }
    platform::Insets safeAreaInsets() const override { return {}; }
    void clearCache() override { ++cacheClears; }

    FakeWebViewPeer* newest = nullptr; ///< of the web view made last
    int made = 0;
    int cacheClears = 0;
};

} // namespace kestrin::test
