#pragma once

#include <gtk/gtk.h>

namespace kestrin::gtk {

/// A window over `parent` (or by itself when null) that takes all input until it is closed, which Escape does
/// too. It goes with its parent; GTK owns it. Thread: main.
GtkWindow* newModalWindow(GtkWindow* parent, const char* title);

} // namespace kestrin::gtk
