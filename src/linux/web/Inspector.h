#pragma once

#include <gtk/gtk.h>

namespace kestrin::gtk {

/// Opens the web inspector of the page that is somewhere in `place`, or closes it when it is open. False when
/// there is no page, or none that may be inspected. Thread: main.
bool toggleInspector(GtkWidget* place);

} // namespace kestrin::gtk
