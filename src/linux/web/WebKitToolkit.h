#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "linux/web/WebOptions.h"
#include "platform/Log.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <memory>

namespace kestrin::gtk {

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
