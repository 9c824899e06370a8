#pragma once

#include <gtk/gtk.h>

#include <string>

namespace kestrin::gtk {

/// A modal message over `parent` (or by itself when null) with one button that dismisses it. Returns at once.
/// Thread: main.
void showAlert(GtkWindow* parent, const std::string& title, const std::string& message,
               const std::string& button);

} // namespace kestrin::gtk
