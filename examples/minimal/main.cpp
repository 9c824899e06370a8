// A host in a few lines: minimal KEY HOST=ADDRESS:PORT, both as kestrin-serve prints them.
#include <kestrin/gtk.h>
#include <kestrin/kestrin.h>
#include <kestrin/session.h>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    kestrin::gtk::Options options;
    options.applicationId = "org.example.Minimal";
    options.hostMap = kestrin::gtk::HostMap::parse(argc > 2 ? argv[2] : "");
    options.worldTracking = kestrin::session::simulation();
    kestrin::platform::installPlatform(kestrin::gtk::LinuxPlatform::make(options));

    auto view = kestrin::KestrinCVSession::initKestrinView();
    GtkWidget* window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), 960, 600);
    gtk_window_set_child(GTK_WINDOW(window), kestrin::gtk::widget(*view));
    gtk_window_present(GTK_WINDOW(window));
    view->setup(kestrin::KestrinSettings::initWithKeyString(argv[1]));
    view->start();
    while (g_list_model_get_n_items(gtk_window_get_toplevels()) > 0)
        g_main_context_iteration(nullptr, true);
    view->destroy();
}
