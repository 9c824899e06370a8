#pragma once

#include "platform/WebView.h"
#include "support/RecordedView.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestrin::test {

/// Keeps what it is asked to load and evaluate, and plays the page and the web engine. Thread: main.
struct FakeWebViewPeer : RecordingPeer<platform::WebViewPeer> {
    explicit FakeWebViewPeer(platform::WebViewConfiguration c) : configuration(std::move(c)) {}

    void load(const platform::UrlRequest& request) override { loads.push_back(request); }
    void evaluate(std::string_view script) override { scripts.emplace_back(script); }
    void setOpaque(bool value) override { opaque = value; }
    void setScroll(const platform::ScrollSettings& value) override { scroll = value; }
    void setNavigationDelegate(std::weak_ptr<platform::NavigationDelegate> value) override {
        navigation = std::move(value);
    }
    void setUiDelegate(std::weak_ptr<platform::WebUiDelegate> value) override { ui = std::move(value); }
    void setInspectable(bool value) override { inspectable = value; }

    /// The page posts `body` to a named handler; false when nobody listens under that name.
    bool post(const std::string& handler, std::string_view body);
    /// The page wants to go somewhere: asks with preferences from feature level 13.0 on, as systems do.
    platform::NavigationPolicy navigate(const std::string& url, bool inOwnWebView = true);

    platform::WebViewConfiguration configuration;
    std::vector<platform::UrlRequest> loads;
    std::vector<std::string> scripts;
    bool opaque = true, inspectable = false;
    platform::ScrollSettings scroll;
    platform::ContentMode contentMode = platform::ContentMode::recommended; ///< as the last question left it
    std::weak_ptr<platform::NavigationDelegate> navigation;
    std::weak_ptr<platform::WebUiDelegate> ui;
};

class FakeWebToolkit : public platform::WebToolkit {
  public:
    std::unique_ptr<platform::WebViewPeer>
    makeWebPeer(platform::View& view, const platform::WebViewConfiguration& configuration) override;
    platform::Insets safeAreaInsets() const override { return insets; }
    void clearCache() override { ++cacheClears; }

    FakeWebViewPeer* newest = nullptr; ///< of the web view made last
    int made = 0;
    platform::Insets insets;
    int cacheClears = 0;
};

} // namespace kestrin::test
