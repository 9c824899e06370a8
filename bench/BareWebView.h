#pragma once

#include "linux/toolkit/GRef.h"
#include "linux/toolkit/SignalHandler.h"

#include <webkit/webkit.h>

#include <functional>
#include <string>
#include <string_view>

namespace kestrin::bench {

/// The baseline: a WebKitGTK view as an application uses it that does without Kestrin. It accepts every
/// certificate, as Kestrin does. Thread: main, unless said otherwise.
class BareWebView {
  public:
    /// `received` is told what the page posts to the handler "kestrin".
    explicit BareWebView(std::function<void(std::string_view message)> received);

    GtkWidget* widget() const { return GTK_WIDGET(m_view.get()); }
    void load(const std::string& url) { webkit_web_view_load_uri(m_view.get(), url.c_str()); }
    /// Evaluates on main, after what was handed over before. Thread: any.
    void evaluate(std::string script);

  private:
    static void messageReceived(gpointer manager, JSCValue* value, BareWebView* self);

    const std::function<void(std::string_view)> m_received;
    gtk::GRef<WebKitWebView> m_view;
    gtk::SignalHandler m_message;
};

} // namespace kestrin::bench
