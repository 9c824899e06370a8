#include "linux/web/Navigation.h"

#include <string>
#include <utility>

namespace kestrin::gtk {

using platform::NavigationPolicy;

namespace {
constexpr double kLevelWithPreferences = 13;
}

Navigation::Navigation(WebKitWebView* view, double featureLevel, std::shared_ptr<platform::LogSink> log)
    : m_offersPreferences(featureLevel >= kLevelWithPreferences), m_log(std::move(log)),
      m_decide(view, "decide-policy",
               G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                              Navigation* self) -> gboolean { return self->decide(decision, type); }),
               this),
      m_end(view, "web-process-terminated",
            G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason reason, Navigation* self) {
                self->reportEnd(reason);
            }),
            this) {}

bool Navigation::decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) const {
    const NavigationPolicy policy = type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE
                                        ? ask(WEBKIT_RESPONSE_POLICY_DECISION(decision))
                                        : ask(WEBKIT_NAVIGATION_POLICY_DECISION(decision),
                                              type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION);
    if (policy == NavigationPolicy::cancel)
        webkit_policy_decision_ignore(decision);
    else
        webkit_policy_decision_use(decision);
    return true;
}

NavigationPolicy Navigation::ask(WebKitNavigationPolicyDecision* decision, bool inOwnWebView) const {
    const auto delegate = m_delegate.lock();
    if (!delegate)
        return NavigationPolicy::allow;
    WebKitURIRequest* request = webkit_navigation_action_get_request(
        webkit_navigation_policy_decision_get_navigation_action(decision));
    const platform::NavigationAction action{webkit_uri_request_get_uri(request), inOwnWebView};
    if (!m_offersPreferences)
        return delegate->decideNavigationAction(action);
    // WebKitGTK lays every page out in one way, whatever mode is asked for.
    platform::ContentMode mode = platform::ContentMode::recommended;
    return delegate->decideNavigationAction(action, mode);
}

NavigationPolicy Navigation::ask(WebKitResponsePolicyDecision* decision) const {
    const auto delegate = m_delegate.lock();
    const char* url = webkit_uri_response_get_uri(webkit_response_policy_decision_get_response(decision));
    const auto policy = delegate ? delegate->decideNavigationResponse(url) : NavigationPolicy::allow;
    // What it cannot show WebKit would show as text, in place of the page.
    return webkit_response_policy_decision_is_mime_type_supported(decision) ? policy
                                                                            : NavigationPolicy::cancel;
}

void Navigation::reportEnd(WebKitWebProcessTerminationReason reason) const {
    const char* why = "it crashed";
    if (reason == WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT)
        why = "it needed too much memory";
    else if (reason == WEBKIT_WEB_PROCESS_TERMINATED_BY_API)
        why = "the application ended it";
    m_log->write(std::string("Kestrin - WebKitPeer - The web process has ended: ") + why);
    if (const auto delegate = m_delegate.lock())
        delegate->webContentProcessDidTerminate();
}

} // namespace kestrin::gtk
