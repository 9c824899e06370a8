#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "platform/Log.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <memory>

namespace kestrin::gtk {

/// Puts a page's navigations to the delegate, and tells it when the page's process has ended; without one
/// navigations are allowed. Nothing makes another window, so that one which is asked for and allowed does not
/// open. Thread: main.
class Navigation {
  public:
    Navigation(WebKitWebView* view, double featureLevel, std::shared_ptr<platform::LogSink> log);

    void setDelegate(std::weak_ptr<platform::NavigationDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

  private:
    bool decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) const;
    platform::NavigationPolicy ask(WebKitNavigationPolicyDecision* decision, bool inOwnWebView) const;
    platform::NavigationPolicy ask(WebKitResponsePolicyDecision* decision) const;

    void reportEnd(WebKitWebProcessTerminationReason reason) const;

    const bool m_offersPreferences;
    const std::shared_ptr<platform::LogSink> m_log;
    std::weak_ptr<platform::NavigationDelegate> m_delegate;
    SignalHandler m_decide, m_end;
};

} // namespace kestrin::gtk
