#pragma once

#include "platform/Network.h"
#include "platform/View.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace kestrin::platform {

/// Receives what the page posts to a named handler. Thread: main.
class ScriptMessageHandler {
  public:
    virtual ~ScriptMessageHandler() = default;
    /// `body` is the posted text by length: it may hold NUL bytes.
    virtual void didReceiveScriptMessage(const std::string& handler, std::string_view body) = 0;
};

enum class NavigationPolicy { allow, cancel };
enum class ContentMode { recommended, mobile };

struct NavigationAction {
    std::string url;
    bool inOwnWebView = true; ///< false when the page asks for another window
};

/// Decides about navigation, and hears when the page is lost. Thread: main.
class NavigationDelegate : public AuthenticationDelegate {
  public:
    virtual NavigationPolicy decideNavigationAction(const NavigationAction& action) = 0;
    /// Asked instead of the other by systems that offer preferences.
    virtual NavigationPolicy decideNavigationAction(const NavigationAction& action, ContentMode& mode) = 0;
    virtual NavigationPolicy decideNavigationResponse(const std::string& url) = 0;
    /// The page's process has ended by itself; the view stays empty until something is loaded.
    virtual void webContentProcessDidTerminate() = 0;
};

/// What the page asks the application's interface for. Thread: main.
class WebUiDelegate {
  public:
    virtual ~WebUiDelegate() = default;
    /// The page wants a file; the request stays pending.
    virtual void didRequestFile() = 0;
};

struct WebViewConfiguration {
    std::map<std::string, std::weak_ptr<ScriptMessageHandler>> scriptMessageHandlers;
    bool allowsInlineMediaPlayback = false;
    bool mediaRequiresUserAction = true;
    bool suppressesIncrementalRendering = false;
    bool allowsPictureInPicture = false;
    bool accessibilityModal = false;
    std::map<std::string, int> preferences;
};

struct UrlRequest {
    std::string url;
    bool ignoresLocalCache = false;
    double timeout = 60; ///< seconds without progress
};

/// The scrolling part of a web view.
struct ScrollSettings {
    bool bounces = true;
    bool opaque = true;
    bool adjustsContentInset = false;
    bool insetsLayoutMarginsFromSafeArea = true;
    Color background = kWhite;
};

struct Insets {
    double top = 0, left = 0, bottom = 0, right = 0; ///< points
    bool operator==(const Insets&) const = default;
};

class WebViewPeer : public ViewPeer {
  public:
    virtual void load(const UrlRequest& request) = 0;
    virtual void evaluate(std::string_view script) = 0;
    virtual void setOpaque(bool opaque) = 0;
    virtual void setScroll(const ScrollSettings& settings) = 0;
    virtual void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) = 0;
    virtual void setUiDelegate(std::weak_ptr<WebUiDelegate> delegate) = 0;
    virtual void setInspectable(bool inspectable) = 0;
};

/// A page. Script messages that arrive and evaluations keep their order. Thread: main.
class WebView : public View {
  public:
    explicit WebView(const WebViewConfiguration& configuration);

    void load(const UrlRequest& request) { m_webPeer.load(request); }
    /// The script's result and errors are ignored.
    void evaluate(std::string_view script) { m_webPeer.evaluate(script); }
    void setOpaque(bool opaque) { m_webPeer.setOpaque(opaque); }
    const ScrollSettings& scroll() const { return m_scroll; }
    void setScroll(const ScrollSettings& settings);
    void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate);
    void setUiDelegate(std::weak_ptr<WebUiDelegate> delegate);
    /// Whether a developer may look into the page; at first nobody may, and the system may forbid it.
    void setInspectable(bool inspectable) { m_webPeer.setInspectable(inspectable); }
    /// The parts of the view that the system covers, out of which it keeps the page.
    virtual Insets safeAreaInsets() const;

  private:
    explicit WebView(std::unique_ptr<WebViewPeer> peer);

    WebViewPeer& m_webPeer;
    ScrollSettings m_scroll;
};

/// Makes the toolkit's side of web views. Thread: main.
class WebToolkit {
  public:
    virtual ~WebToolkit() = default;
    virtual std::unique_ptr<WebViewPeer> makeWebPeer(View& view,
                                                     const WebViewConfiguration& configuration) = 0;
    /// What the system covers of every web view.
    virtual Insets safeAreaInsets() const = 0;
    /// Forgets every cached response.
    virtual void clearCache() = 0;
};

} // namespace kestrin::platform
