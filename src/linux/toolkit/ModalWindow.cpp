#include "linux/toolkit/ModalWindow.h"

namespace kestrin::gtk {

GtkWindow* newModalWindow(GtkWindow* parent, const char* title) {
    GtkWindow* const window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_title(window, title);
    gtk_window_set_transient_for(window, parent);
    gtk_window_set_modal(window, true);
    gtk_window_set_destroy_with_parent(window, true);
    GtkEventController* const keys = gtk_shortcut_controller_new();
    gtk_shortcut_controller_add_shortcut(
        GTK_SHORTCUT_CONTROLLER(keys),
        gtk_shortcut_new(gtk_keyval_trigger_new(GDK_KEY_Escape, GdkModifierType(0)),
                         gtk_named_action_new("window.close")));
    gtk_widget_add_controller(GTK_WIDGET(window), keys);
    return window;
}

} // namespace kestrin::gtk
