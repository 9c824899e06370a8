#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

namespace kestrin::gtk {

/// A web view that is set up as `configuration` says, script messages aside, which come from `messages`. It
/// runs in the process of `related`, or in one of its own when that is null.
GRef<WebKitWebView> newWebView(const platform::WebViewConfiguration& configuration,
                               WebKitNetworkSession* session, WebKitWebView* related,
                               WebKitUserContentManager* messages);

} // namespace kestrin::gtk
