#pragma once

#include "linux/web/LoadClock.h"
#include "linux/web/ServerTrust.h"
#include "platform/Log.h"
#include "platform/WebView.h"

#include <memory>

namespace kestrin::gtk {

/// What a load that ignores local data, or a cleared cache, forgets.
inline constexpr auto kCaches =
    static_cast<WebKitWebsiteDataTypes>(WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_DISK_CACHE);

/// Loads pages into a web view. Thread: main.
class PageLoad {
  public:
    /// The owner keeps `view` alive.
    PageLoad(WebKitWebView* view, std::shared_ptr<platform::LogSink> log);
    ~PageLoad();
    PageLoad(const PageLoad&) = delete;
    PageLoad& operator=(const PageLoad&) = delete;

    void setDelegate(std::weak_ptr<platform::AuthenticationDelegate> delegate) {
        m_trust->setDelegate(std::move(delegate));
    }
    void start(const platform::UrlRequest& request);

  private:
    void clearCaches();
    void load();
    void expired();
    void reportFailure(const char* url, const GError& error);

    WebKitWebView* const m_view;
    const std::shared_ptr<platform::LogSink> m_log;
    LoadClock m_clock;
    const std::shared_ptr<ServerTrust> m_trust;
    SignalHandler m_failed;
    platform::UrlRequest m_request;
    GRef<GCancellable> m_clearing; ///< cancelled when nobody waits for it any more
};

} // namespace kestrin::gtk
