#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "platform/Network.h"

#include <webkit/webkit.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// Puts the certificates of a page's servers to the delegate. WebKit tells of bad ones, when it has given the
/// request up; of good ones it only tells that the page came over TLS, so of those the delegate hears once a
/// load. Thread: main.
class ServerTrust : public std::enable_shared_from_this<ServerTrust> {
  public:
    /// `load` loads the page once more, as a server has been accepted now. The owner keeps `view` alive.
    using Load = std::function<void(const std::string& url)>;
    static std::shared_ptr<ServerTrust> make(WebKitWebView* view, Load load);

    void setDelegate(std::weak_ptr<platform::AuthenticationDelegate> delegate) {
        m_delegate = std::move(delegate);
    }
    /// Has the page loaded once more when this load has finished; false when that was done too often.
    bool retry(const char* url);
    /// Another page is wanted: the present one is not loaded once more.
    void giveUp() { m_retryUrl.clear(); }

  private:
    ServerTrust(WebKitWebView* view, Load load);
    void watch();
    void onChanged(WebKitLoadEvent event);
    void onStarted();
    void onCommitted();
    bool onBadPage(const char* url, GTlsCertificate* certificate);
    void watchResource(WebKitWebResource* resource);
    void onBadResource(const char* url, GTlsCertificate* certificate);
    bool accept(const std::string& host, GTlsCertificate* certificate);
    bool ask(const std::string& host);

    WebKitWebView* const m_view;
    const Load m_load;
    std::weak_ptr<platform::AuthenticationDelegate> m_delegate;
    std::vector<SignalHandler> m_signals;
    std::map<std::string, bool> m_answers; ///< by host, during this load
    std::string m_retryUrl;                ///< to be loaded once more when this load has finished
    bool m_isRetrying = false;             ///< the load that starts next belongs to this one
    int m_retries = 0;
};

} // namespace kestrin::gtk
