// A kiosk: the whole screen, kept awake, with an application of its own that needs no network. kiosk [FOLDER]
// A touch of the page opens the scene "welcome"; F5 loads the page anew; Ctrl+Q ends.
#include <kestrin/content.h>
#include <kestrin/gtk.h>
#include <kestrin/kestrin.h>
#include <kestrin/session.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace kestrin;

class Kiosk {
  public:
    explicit Kiosk(const char* folder) : m_server(content::ApplicationFolder{folder}) {}

    int run() {
        if (const auto wrong = m_server.start()) {
            std::fprintf(stderr, "kiosk: %s\n", wrong->c_str());
            return 1;
        }
        GtkApplication* application = gtk_application_new("org.example.Kiosk", G_APPLICATION_DEFAULT_FLAGS);
        g_signal_connect_swapped(application, "activate", G_CALLBACK(+[](Kiosk* kiosk) { kiosk->open(); }),
                                 this);
        const int status = g_application_run(G_APPLICATION(application), 0, nullptr);
        g_object_unref(application);
        return status;
    }

  private:
    void open() {
        gtk::Options options;
        options.applicationId = "org.example.Kiosk";
        options.hostMap = gtk::HostMap::parse(m_server.hostMapEntry(content::Form::Direct));
        options.worldTracking = session::simulation();
        platform::installPlatform(gtk::LinuxPlatform::make(options));

        m_view = KestrinCVSession::initKestrinView();
        m_settings = KestrinSettings::initWithKeyString(m_server.keyString(content::Form::Direct));
        m_view->setup(m_settings);
        m_view->registerForEventCallback(std::int32_t(KestrinWebEvent::stringToEvent("onWebUpdate")),
                                         [this](const auto&) { welcome(); });
        m_view->startWithCallback([] { std::exit(EXIT_FAILURE); }); // the service manager starts it again
        makeWindow();
    }

    void makeWindow() {
        auto* application = GTK_APPLICATION(g_application_get_default());
        GtkWidget* window = gtk_application_window_new(application);
        gtk_window_set_default_size(GTK_WINDOW(window), 1280, 800);
        gtk_window_set_child(GTK_WINDOW(window), gtk::widget(*m_view));
        gtk_widget_set_cursor_from_name(window, "none");
        g_signal_connect_swapped(window, "destroy",
                                 G_CALLBACK(+[](Kiosk* kiosk) { kiosk->m_view->destroy(); }), this);
        addAction("reload", "F5",
                  [](GSimpleAction*, GVariant*, gpointer self) { static_cast<Kiosk*>(self)->reload(); });
        addAction("quit", "<Control>q", [](GSimpleAction*, GVariant*, gpointer) {
            g_application_quit(g_application_get_default());
        });
        gtk_window_fullscreen(GTK_WINDOW(window));
        gtk_window_present(GTK_WINDOW(window));
        gtk_application_inhibit(
            application, GTK_WINDOW(window),
            GtkApplicationInhibitFlags(GTK_APPLICATION_INHIBIT_IDLE | GTK_APPLICATION_INHIBIT_SUSPEND),
            "The kiosk is being shown");
    }

    void addAction(const char* name, const char* key, void (*activate)(GSimpleAction*, GVariant*, gpointer)) {
        auto* application = GTK_APPLICATION(g_application_get_default());
        GSimpleAction* action = g_simple_action_new(name, nullptr);
        g_signal_connect(action, "activate", G_CALLBACK(activate), this);
        g_action_map_add_action(G_ACTION_MAP(application), G_ACTION(action));
        g_object_unref(action);
        const char* keys[] = {key, nullptr};
        gtk_application_set_accels_for_action(application, (std::string("app.") + name).c_str(), keys);
    }

    void reload() { m_view->getNavigator()->goTo(m_settings.getTemplateUrl()); }

    void welcome() {
        if (const auto bridge = m_view->getAsyncBridge())
            bridge->openScene("welcome");
    }

    content::ContentServer m_server;
    KestrinSettings m_settings;
    std::shared_ptr<KestrinView> m_view;
};

} // namespace

int main(int argc, char** argv) { return Kiosk(argc > 1 ? argv[1] : KIOSK_APPLICATION).run(); }
