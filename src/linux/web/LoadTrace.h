#pragma once

#include "linux/toolkit/SignalHandler.h"

#include <webkit/webkit.h>

#include <vector>

namespace kestrin::gtk {

/// Writes what a page loads, and how that went, as lines of the topic "web" while that is on. Thread: main.
class LoadTrace {
  public:
    explicit LoadTrace(WebKitWebView* view);

  private:
    std::vector<SignalHandler> m_signals;
};

} // namespace kestrin::gtk
