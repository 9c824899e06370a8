#include "support/FakeWeb.h"

#include "platform/Platform.h"

namespace kestrin::test {

bool FakeWebViewPeer::post(const std::string& handler, std::string_view body) {
    const auto found = configuration.scriptMessageHandlers.find(handler);
    const auto listener = found == configuration.scriptMessageHandlers.end() ? nullptr : found->second.lock();
    if (listener)
        listener->didReceiveScriptMessage(handler, body);
    return listener != nullptr;
}

platform::NavigationPolicy FakeWebViewPeer::navigate(const std::string& url, bool inOwnWebView) {
    const auto delegate = navigation.lock();
    if (!delegate)
        return platform::NavigationPolicy::allow;
    contentMode = platform::ContentMode::recommended;
    const platform::NavigationAction action{url, inOwnWebView};
    return platform::platform().featureLevel() >= 13.0 ? delegate->decideNavigationAction(action, contentMode)
                                                       : delegate->decideNavigationAction(action);
}

std::unique_ptr<platform::WebViewPeer>
FakeWebToolkit::makeWebPeer(platform::View&, const platform::WebViewConfiguration& configuration) {
    auto peer = std::make_unique<FakeWebViewPeer>(configuration);
    newest = peer.get();
    ++made;
    return peer;
}

} // namespace kestrin::test
