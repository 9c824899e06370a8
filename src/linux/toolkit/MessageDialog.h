#pragma once

#include <gtk/gtk.h>

#include <string>

namespace kestrin::gtk {

/// A modal dialog over `parent` (or by itself when null) with a headline and a text, still without buttons
/// and not yet shown. It goes with its parent; GTK owns it. Thread: main.
GtkDialog* newMessageDialog(GtkWindow* parent, const std::string& headline, const std::string& text);
/// Shows it, and what Enter does.
void showDialog(GtkDialog* dialog);

} // namespace kestrin::gtk
