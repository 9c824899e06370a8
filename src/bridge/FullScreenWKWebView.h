#pragma once

#include "platform/WebView.h"

namespace kestrin {

/// A page that the system's bars and notches never push aside. Thread: main.
class FullScreenWKWebView : public platform::WebView {
  public:
    using platform::WebView::WebView;
    platform::Insets safeAreaInsets() const override { return {}; }
};

} // namespace kestrin
