#include "MainLoop.h"

namespace kestrin::bench {

bool runUntil(double seconds, const std::function<bool()>& done) {
    bool late = false;
    const auto ring = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
    };
    const guint alarm = g_timeout_add(guint(seconds * 1000), ring, &late);
    bool finished = done();
    while (!finished && !late) {
        g_main_context_iteration(nullptr, true);
        finished = done();
    }
    if (!late)
        g_source_remove(alarm);
    return finished;
}

GtkWidget* showWindow(GtkWidget* content, int width, int height) {
    GtkWidget* window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), width, height);
    gtk_window_set_child(GTK_WINDOW(window), content);
    gtk_window_present(GTK_WINDOW(window));
    return window;
}

} // namespace kestrin::bench
