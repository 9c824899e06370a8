#include "linux/toolkit/Question.h"

#include "linux/toolkit/MessageDialog.h"
#include "linux/toolkit/ValidText.h"

#include <utility>

namespace kestrin::gtk {

namespace {

using Answer = std::function<void(Reply)>;

/// Belongs to the dialog.
struct Pending {
    ~Pending() {
        if (answer)
            answer(Reply::dismissed);
    }
    Answer answer;
};

void responded(GtkWindow* dialog, int response, Pending* pending) {
    const Answer answer = std::exchange(pending->answer, nullptr);
    gtk_window_destroy(dialog);
    answer(response == GTK_RESPONSE_ACCEPT   ? Reply::yes
           : response == GTK_RESPONSE_REJECT ? Reply::no
                                             : Reply::dismissed);
}

} // namespace

void ask(GtkWindow* parent, const Question& question, std::function<void(Reply)> answer) {
    GtkDialog* const dialog = newMessageDialog(parent, question.headline, question.text);
    gtk_window_set_title(GTK_WINDOW(dialog), validText(question.title).get());
    GtkWidget* const no = gtk_dialog_add_button(dialog, validText(question.no).get(), GTK_RESPONSE_REJECT);
    gtk_dialog_add_button(dialog, validText(question.yes).get(), GTK_RESPONSE_ACCEPT);
    gtk_dialog_set_default_response(dialog, GTK_RESPONSE_REJECT);
    gtk_widget_grab_focus(no);
    const auto drop = [](gpointer pending, GClosure*) { delete static_cast<Pending*>(pending); };
    g_signal_connect_data(dialog, "response", G_CALLBACK(responded), new Pending{std::move(answer)}, drop,
                          GConnectFlags(0));
    showDialog(dialog);
}

} // namespace kestrin::gtk
