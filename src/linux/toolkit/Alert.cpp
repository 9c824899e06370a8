#include "linux/toolkit/Alert.h"

#include "linux/toolkit/ValidText.h"

namespace kestrin::gtk {

void showAlert(GtkWindow* parent, const std::string& title, const std::string& message,
               const std::string& button) {
    // GTK owns its windows: this one lives until it is destroyed, at the latest with its parent, which a
    // modal window left alone would keep from ending the application.
    constexpr auto kFlags = GtkDialogFlags(GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT);
    GtkWidget* dialog = gtk_message_dialog_new(parent, kFlags, GTK_MESSAGE_INFO, GTK_BUTTONS_NONE, "%s",
                                               validText(title).get());
    gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s", validText(message).get());
    GtkWidget* exit = gtk_dialog_add_button(GTK_DIALOG(dialog), validText(button).get(), GTK_RESPONSE_CLOSE);
    gtk_button_set_use_underline(GTK_BUTTON(exit), false); // the label is shown as it is
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_CLOSE);
    g_signal_connect(dialog, "response", G_CALLBACK(gtk_window_destroy), nullptr);
    gtk_window_present(GTK_WINDOW(dialog));
}

} // namespace kestrin::gtk
