#include "linux/toolkit/Widget.h"

#include "linux/toolkit/WidgetPeer.h"

namespace kestrin::gtk {

GtkWidget* widget(platform::View& view) {
    GtkWidget* result = dynamic_cast<HasWidget&>(view.peer()).widget();
    gtk_widget_set_hexpand(result, true);
    gtk_widget_set_vexpand(result, true);
    gtk_widget_set_overflow(result, GTK_OVERFLOW_HIDDEN);
    return result;
}

} // namespace kestrin::gtk
