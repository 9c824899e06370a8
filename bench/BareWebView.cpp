#include "BareWebView.h"

#include <memory>
#include <utility>

namespace kestrin::bench {

namespace {

struct Hop {
    gtk::GRef<WebKitWebView> view;
    std::string script;

    static gboolean arrive(gpointer data) {
        const auto& hop = *static_cast<Hop*>(data);
        webkit_web_view_evaluate_javascript(hop.view.get(), hop.script.data(), gssize(hop.script.size()),
                                            nullptr, nullptr, nullptr, nullptr, nullptr);
        return G_SOURCE_REMOVE;
    }
    static void end(gpointer data) { delete static_cast<Hop*>(data); }
};

} // namespace

BareWebView::BareWebView(std::function<void(std::string_view)> received)
    : m_received(std::move(received)),
      m_view(gtk::GRef<WebKitWebView>::refSink(WEBKIT_WEB_VIEW(webkit_web_view_new()))) {
    WebKitUserContentManager* manager = webkit_web_view_get_user_content_manager(m_view.get());
    m_message =
        gtk::SignalHandler(manager, "script-message-received::kestrin", G_CALLBACK(messageReceived), this);
    webkit_user_content_manager_register_script_message_handler(manager, "kestrin", nullptr);
    webkit_network_session_set_tls_errors_policy(webkit_web_view_get_network_session(m_view.get()),
                                                 WEBKIT_TLS_ERRORS_POLICY_IGNORE);
}

void BareWebView::messageReceived(gpointer, JSCValue* value, BareWebView* self) {
    const gtk::GText text(jsc_value_to_string(value));
    self->m_received(text.get());
}

void BareWebView::evaluate(std::string script) {
    g_main_context_invoke_full(nullptr, G_PRIORITY_DEFAULT, Hop::arrive, new Hop{m_view, std::move(script)},
                               Hop::end);
}

} // namespace kestrin::bench
