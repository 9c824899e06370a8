#pragma once

#include "bridge/WebEventDelegate.h"
#include "platform/WebView.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

class FullScreenWKWebView;
class PageFrameListener;

/// The web view above the camera picture: loads the page, evaluates scripts in it, and hands what it posts to
/// the event delegate. Made with std::make_shared. Thread: any, unless said otherwise; what touches the view
/// re-posts itself to main.
class KestrinWebView : public platform::ScriptMessageHandler,
                       public platform::NavigationDelegate,
                       public platform::WebUiDelegate,
                       public std::enable_shared_from_this<KestrinWebView> {
  public:
    /// The most that page messages waiting for their delivery may hold, as posted; one that does not fit is
    /// dropped, undecoded.
    static constexpr std::size_t kMaxWaitingBytes = std::size_t(64) << 20;

    KestrinWebView();
    ~KestrinWebView() override;

    /// Makes the web view, once, and loads the address asked for meanwhile. A later call only replaces the
    /// listener.
    void prepare(std::shared_ptr<PageFrameListener> listener);
    /// An address asked for before `prepare` is kept for it.
    void loadUrl(const std::optional<std::string>& url, bool clearCache);
    /// Loads an empty page.
    void clear();
    /// Forgets every cached response. Thread: main.
    void clearCache();
    /// Whether a developer may look into the page there is now. Nothing before `prepare`.
    void setInspectable(bool inspectable);
    /// In the order of posting for each thread; result and errors are ignored.
    void eval(std::string script);

    /// Appears half a second later; does nothing when not hidden now, also while `hide` is fading.
    void show();
    /// Fades out over 0.3 seconds.
    void hide();
    void setBackgroundColor(const platform::Color& color);
    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void removeFromParentView();
    void clipToParent();
    /// Points; zero before `prepare`. Thread: main.
    platform::Size getSize() const;
    /// Null before `prepare`. Thread: main.
    std::shared_ptr<platform::View> getView() const;

    void registerEventDelegate(std::weak_ptr<WebEventDelegate> delegate);
    /// Null when there is none, or when it is gone.
    std::shared_ptr<WebEventDelegate> delegate() const;

    /// `callback` hears when the page's process has ended by itself; the page is gone then until an address
    /// is loaded. Thread: main, as the callback's.
    void onPageLost(std::function<void()> callback) { m_pageLost = std::move(callback); }

    /// The page's history is never stepped from here: these do nothing.
    void goBack() {}
    void goForward() {}

    void didReceiveScriptMessage(const std::string& handler, std::string_view body) override;
    platform::NavigationPolicy decideNavigationAction(const platform::NavigationAction& action) override;
    platform::NavigationPolicy decideNavigationAction(const platform::NavigationAction& action,
                                                      platform::ContentMode& mode) override;
    platform::NavigationPolicy decideNavigationResponse(const std::string& url) override;
    void webContentProcessDidTerminate() override;
    void didRequestFile() override;
    bool acceptServerTrust(const std::string& host) override;

  private:
    void makeWebView();
    std::shared_ptr<PageFrameListener> frameListener() const;
    bool admit(std::size_t bytes);
    void dispatchEvent(const EventData& data);

    mutable std::mutex m_mutex; ///< of the next two
    std::shared_ptr<PageFrameListener> manager;
    std::weak_ptr<WebEventDelegate> _delegate;

    std::atomic<bool> _isPrepared = false;
    std::atomic<bool> m_isHidden = false; ///< as the web view's, to be read on any thread
    // Main only, like all that follows.
    std::optional<std::string> _url;
    platform::WebViewConfiguration _theConfiguration;
    std::shared_ptr<FullScreenWKWebView> _webView;
    std::size_t m_waitingBytes = 0;
    bool m_isDropping = false;
    std::function<void()> m_pageLost;
};

} // namespace kestrin
