#include "linux/toolkit/Alert.h"

#include "linux/toolkit/MessageDialog.h"
#include "linux/toolkit/ValidText.h"

namespace kestrin::gtk {

void showAlert(GtkWindow* parent, const std::string& title, const std::string& message,
               const std::string& button) {
    GtkDialog* const dialog = newMessageDialog(parent, title, message);
    gtk_window_set_title(GTK_WINDOW(dialog), validText(title).get());
    GtkWidget* const exit = gtk_dialog_add_button(dialog, validText(button).get(), GTK_RESPONSE_CLOSE);
    gtk_button_set_use_underline(GTK_BUTTON(exit), false); // the label is shown as it is
    gtk_dialog_set_default_response(dialog, GTK_RESPONSE_CLOSE);
    g_signal_connect(dialog, "response", G_CALLBACK(gtk_window_destroy), nullptr);
    showDialog(dialog);
}

} // namespace kestrin::gtk
