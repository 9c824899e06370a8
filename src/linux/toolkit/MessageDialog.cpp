#include "linux/toolkit/MessageDialog.h"

#include "linux/toolkit/ValidText.h"

namespace kestrin::gtk {

namespace {

constexpr int kMargin = 20; // points

} // namespace

GtkDialog* newMessageDialog(GtkWindow* parent, const std::string& headline, const std::string& text) {
    // Left alone, a modal window would keep its parent from ending the application.
    constexpr auto kFlags = GtkDialogFlags(GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT);
    GtkWidget* const dialog = gtk_message_dialog_new(parent, kFlags, GTK_MESSAGE_OTHER, GTK_BUTTONS_NONE,
                                                     "%s", validText(headline).get());
    gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s", validText(text).get());
    // The theme counts on a title bar of its own, which a window manager's takes the place of.
    GtkWidget* const content = gtk_dialog_get_content_area(GTK_DIALOG(dialog));
    gtk_widget_set_margin_top(content, kMargin);
    gtk_widget_set_margin_bottom(content, kMargin / 2);
    gtk_window_set_resizable(GTK_WINDOW(dialog), false);
    return GTK_DIALOG(dialog);
}

void showDialog(GtkDialog* dialog) {
    gtk_window_present(GTK_WINDOW(dialog));
    gtk_window_set_focus_visible(GTK_WINDOW(dialog), true);
}

} // namespace kestrin::gtk
