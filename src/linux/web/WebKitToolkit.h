#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "platform/Log.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <memory>
#include <string>

namespace kestrin::gtk {

struct WebOptions {
    /// Where pages' stored data and cached responses are kept; when both are empty nothing is kept.
    std::string dataFolder, cacheFolder;
    double featureLevel = 12;
    /// Offers the inspector in every page's context menu.
    bool developerExtras = false;
};

/// Web views of WebKitGTK. They share one network session that is Kestrin's own: what is cleared or accepted
/// there touches no other web view of the host. Thread: main.
class WebKitToolkit final : public platform::WebToolkit {
  public:
    explicit WebKitToolkit(std::shared_ptr<platform::LogSink> log, WebOptions options = {});

    std::unique_ptr<platform::WebViewPeer>
    makeWebPeer(platform::View& view, const platform::WebViewConfiguration& configuration) override;
    /// Windows have no notch.
    platform::Insets safeAreaInsets() const override { return {}; }
    void clearCache() override;

  private:
    const std::shared_ptr<platform::LogSink> m_log;
    const WebOptions m_options;
    const GRef<WebKitNetworkSession> m_session;
    GRef<WebKitWebView> m_warm; ///< never shown; the first page moves into its process
    const SignalHandler m_downloads;
};

} // namespace kestrin::gtk
