#pragma once

#include "platform/View.h"

#include <gtk/gtk.h>

namespace kestrin::gtk {

/// The widget of a view, to be placed in any container. The view owns it, so it is not floating: the
/// container adds its own reference, and the caller unrefs nothing. It takes all the room that the container
/// gives (it expands and asks for none), clips what lies outside, and its allocation becomes the view's size.
/// When the view dies first, an empty widget stays in the container; when the container dies first, the
/// widget can be placed again. Thread: main.
GtkWidget* widget(platform::View& view);

} // namespace kestrin::gtk
