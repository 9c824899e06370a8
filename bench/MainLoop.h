#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace kestrin::bench {

/// Runs the main loop until `done`, asked after each turn; false when that takes longer than `seconds`.
bool runUntil(double seconds, const std::function<bool()>& done);
inline void runFor(double seconds) {
    runUntil(seconds, [] { return false; });
}

/// Shows `content` in a window of that size.
GtkWidget* showWindow(GtkWidget* content, int width, int height);

} // namespace kestrin::bench
