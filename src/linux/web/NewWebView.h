#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

namespace kestrin::gtk {

/// A web view that is set up as `configuration` says, script messages aside, which come from `messages`.
GRef<WebKitWebView> newWebView(const platform::WebViewConfiguration& configuration,
                               WebKitNetworkSession* session, WebKitUserContentManager* messages);

} // namespace kestrin::gtk
