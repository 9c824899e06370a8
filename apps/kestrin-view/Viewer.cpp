#include "Viewer.h"

#include "Cameras.h"
#include "Tally.h"
#include "Tracking.h"

#include "bridge/KestrinWebEvent.h"
#include "content/ContentServer.h"
#include "core/KestrinCVSession.h"
#include "core/KestrinView.h"
#include "core/config/Deployment.h"
#include "linux/LinuxPlatform.h"
#include "linux/network/HostMap.h"
#include "linux/permission/PermissionFile.h"
#include "linux/toolkit/Capture.h"
#include "linux/toolkit/GRef.h"
#include "linux/toolkit/Widget.h"
#include "linux/web/Inspector.h"
#include "services/util/Format.h"
#include "session/recording/Recorder.h"

#include <gtk/gtk.h>

#include <optional>
#include <stdexcept>

namespace kestrin::view {

namespace {

constexpr const char* kApplicationId = "org.kestrin.View";
constexpr double kPollSeconds = 0.05;
constexpr double kStepSeconds = 0.5; ///< how long a frame may take until the next is asked for
/// A run that is to end after some frames gives up when nothing happens for so long.
constexpr double kPatienceSeconds = 30;
constexpr double kReportSeconds = 5; ///< how long a page may take to report the last poses, if it ever does

content::Application applicationOf(const Arguments& arguments) {
    content::Application application;
    application.title = arguments.page.filename().string();
    application.page = arguments.page;
    return application;
}

void log(std::string_view line) { platform::platform().log().write(line); }

/// The window, the view in it, and what ends the run.
class Viewer {
  public:
    explicit Viewer(const Arguments& arguments) : m_arguments(arguments) {}
    ~Viewer() { closeView(); }

    Ending run();

  private:
    void findApplication();
    void startRecorder();
    void installPlatform();
    void makeWindow();
    void addKeys();
    void startView();
    std::string trustHint() const;
    void watch();
    void step();
    void finish();
    void end(Ending ending);
    void closeView();
    void finishRecording();

    const Arguments& m_arguments;
    std::optional<content::ContentServer> m_server; ///< of the page; empty when there is a key string
    KestrinSettings m_settings;
    std::shared_ptr<gtk::LinuxPlatform> m_platform;
    std::shared_ptr<session::Recorder> m_recorder; ///< empty when nothing is recorded
    std::shared_ptr<session::SourcedTracking> m_tracking;
    std::shared_ptr<KestrinView> m_view;
    gtk::GRef<GtkWindow> m_window;
    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> m_loop{g_main_loop_new(nullptr, FALSE),
                                                                          g_main_loop_unref};
    std::unique_ptr<platform::RepeatingTimer> m_watch;
    Tally m_tally;
    std::int64_t m_posesSeen = 0;
    std::uint64_t m_framesSeen = 0;
    double m_lastPose = 0;     ///< when the page last said that it received one
    double m_lastProgress = 0; ///< when that, or a frame on the way to the last, was
    Ending m_ending;
};

/// The session ends with it.
void Viewer::closeView() {
    m_watch.reset();
    if (m_view)
        m_view->destroy();
    if (m_window)
        gtk_window_destroy(m_window.get());
    m_window = {};
    m_view.reset();
}

void Viewer::finishRecording() {
    m_recorder->finish();
    m_ending.text += (m_ending.text.empty() ? "" : "\n") +
                     format("recorded %i frames in %@, missed %i", std::int64_t(m_recorder->recorded()),
                            m_arguments.record->string(), std::int64_t(m_recorder->missed()));
}

Ending Viewer::run() {
    g_set_application_name("Kestrin");
    if (m_arguments.strictTls)
        Deployment::certificates = CertificatePolicy::strict;
    findApplication();
    startRecorder();
    installPlatform();
    makeWindow();
    startView();
    watch();
    g_main_loop_run(m_loop.get());
    closeView();
    if (m_recorder)
        finishRecording();
    return m_ending;
}

void Viewer::findApplication() {
    if (!m_arguments.key) {
        m_server.emplace(applicationOf(m_arguments));
        if (const auto wrong = m_server->start())
            throw std::runtime_error(*wrong);
    }
    m_settings = KestrinSettings::initWithKeyString(m_server ? m_server->keyString(content::Form::Direct)
                                                             : *m_arguments.key);
}

void Viewer::startRecorder() {
    if (!m_arguments.record)
        return;
    auto recorder = session::Recorder::create({*m_arguments.record, "kestrin-view", log});
    if (const auto* wrong = std::get_if<session::RecordingError>(&recorder))
        throw std::runtime_error(wrong->text);
    m_recorder = std::get<std::shared_ptr<session::Recorder>>(std::move(recorder));
}

void Viewer::installPlatform() {
    gtk::Options options;
    options.applicationId = kApplicationId;
    options.granted = m_arguments.granted;
    options.logLevel = m_arguments.logLevel;
    options.developerExtras = true;
    options.orientation = m_arguments.orientation;
    if (m_arguments.camera) {
        options.camera = m_arguments.camera->name;
        options.mirrorsCamera = m_arguments.camera->isMirrored;
        options.trackingUsesCamera = isRealCamera(options.camera);
    }
    std::string hosts = m_server ? m_server->hostMapEntry(content::Form::Direct) : "";
    for (const std::string& entry : m_arguments.hostMap)
        hosts += (hosts.empty() ? "" : ",") + entry;
    options.hostMap = gtk::HostMap::parse(hosts);
    options.worldTracking = [this](const platform::InterfaceOrientation& orientation) {
        session::SessionOptions session;
        session.orientation = &orientation;
        session.log = log;
        session.tap = m_recorder;
        return m_tracking = makeTracking(m_arguments, std::move(session));
    };
    m_platform = gtk::LinuxPlatform::make(options);
    if (!m_platform)
        throw std::runtime_error(
            "there is no display; run it under xvfb-run, or set DISPLAY or WAYLAND_DISPLAY");
    platform::installPlatform(m_platform);
    const std::string fault =
        m_arguments.camera ? faultOfCamera(m_arguments.camera->name, m_platform->dispatch()) : "";
    if (!fault.empty())
        throw std::runtime_error(fault);
}

void Viewer::makeWindow() {
    m_window = gtk::GRef<GtkWindow>::refSink(GTK_WINDOW(gtk_window_new()));
    gtk_window_set_title(m_window.get(), "Kestrin");
    gtk_window_set_default_size(m_window.get(), m_arguments.width, m_arguments.height);
    g_signal_connect_swapped(m_window.get(), "close-request", G_CALLBACK(g_main_loop_quit), m_loop.get());
    addKeys();
}

void Viewer::addKeys() {
    const auto bind = [this](const char* keys, GtkShortcutFunc action, gpointer data) {
        GtkEventController* controller = gtk_shortcut_controller_new();
        gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(controller), GTK_SHORTCUT_SCOPE_GLOBAL);
        gtk_shortcut_controller_add_shortcut(
            GTK_SHORTCUT_CONTROLLER(controller),
            gtk_shortcut_new(gtk_shortcut_trigger_parse_string(keys),
                             gtk_callback_action_new(action, data, nullptr)));
        gtk_widget_add_controller(GTK_WIDGET(m_window.get()), controller);
    };
    bind(
        "F11",
        [](GtkWidget* widget, GVariant*, gpointer) -> gboolean {
            auto* window = GTK_WINDOW(widget);
            gtk_window_is_fullscreen(window) ? gtk_window_unfullscreen(window)
                                             : gtk_window_fullscreen(window);
            return TRUE;
        },
        nullptr);
    bind(
        "F12",
        [](GtkWidget* window, GVariant*, gpointer) -> gboolean {
            if (!gtk::toggleInspector(window))
                log("kestrin-view - There is no page to inspect, or its key string lacks debugEnabled.");
            return TRUE;
        },
        nullptr);
    if (m_arguments.steps)
        bind(
            "space|Right",
            [](GtkWidget*, GVariant*, gpointer self) -> gboolean {
                static_cast<Viewer*>(self)->step();
                return TRUE;
            },
            this);
    bind(
        "<Control>q",
        [](GtkWidget*, GVariant*, gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(loop));
            return TRUE;
        },
        m_loop.get());
}

void Viewer::startView() {
    m_view = KestrinCVSession::initKestrinView();
    gtk_window_set_child(m_window.get(), gtk::widget(*m_view));
    m_view->setup(m_settings);
    m_view->registerForEventCallback(std::int32_t(KestrinWebEvent::stringToEvent("onWebUpdate")),
                                     [this](const auto& event) { m_tally.update(event); });
    m_view->onStartDelayed([this](auto delay) {
        if (m_arguments.frames && delay == KestrinView::StartDelay::unreachableServer)
            end({1, "kestrin-view: no answer from " + m_settings.getHostUrl() + trustHint()});
    });
    m_view->startWithCallback([this] {
        if (m_arguments.frames)
            end({1, "kestrin-view: the view could not start"});
    });
    gtk_window_present(m_window.get());
}

/// The likely reason, to be put behind what is wrong; empty when servers are trusted unseen.
std::string Viewer::trustHint() const {
    if (Deployment::certificates == CertificatePolicy::acceptAll)
        return "";
    return m_server ? "; certificates are checked, and that of --page's own server is known to nobody"
                    : "; certificates are checked, and the server's may have been refused";
}

/// Asks the session for the next frame, without waiting for it.
void Viewer::step() {
    m_platform->dispatch().globalAsync([tracking = m_tracking] { tracking->step(kStepSeconds); });
}

/// Looks, now and then, whether the frames are over.
void Viewer::watch() {
    if (!m_arguments.frames)
        return;
    m_lastPose = m_lastProgress = m_platform->dispatch().now();
    m_watch = m_platform->dispatch().every(kPollSeconds, [this] {
        const double now = m_platform->dispatch().now();
        const bool isNewPose = std::exchange(m_posesSeen, m_tally.poses()) != m_tally.poses();
        const bool isNewFrame = std::exchange(m_framesSeen, m_tracking->frames()) != m_tracking->frames();
        const bool isOver =
            m_tracking->hasEnded() || std::int64_t(m_tracking->frames()) >= *m_arguments.frames;
        if (isNewPose)
            m_lastPose = now;
        if (isNewPose || (isNewFrame && !isOver))
            m_lastProgress = now;
        if (isOver && (m_tally.poses() > 0 || now - m_lastProgress > kReportSeconds))
            finish();
        else if (now - m_lastProgress > kPatienceSeconds)
            end({1, "kestrin-view: the page received no pose for " + std::to_string(int(kPatienceSeconds)) +
                        " seconds" + trustHint()});
        else if (m_arguments.steps && (isNewPose || now - m_lastPose > kStepSeconds))
            step();
    });
}

void Viewer::finish() {
    m_watch.reset();
    const std::string summary = m_tally.summary(std::int64_t(m_tracking->frames()));
    if (!m_arguments.screenshot)
        return end({0, summary});
    gtk::captureWhenPainted(gtk::widget(*m_view), m_platform->dispatch(),
                            [this, summary](const auto& picture) {
                                const auto& file = *m_arguments.screenshot;
                                const std::string wrong = picture.isValid() ? gtk::writePng(picture, file)
                                                                            : "the window was not painted";
                                if (!wrong.empty())
                                    return end({1, "kestrin-view: " + file.string() + ": " + wrong});
                                end({0, summary + "\nscreenshot " + file.string()});
                            });
}

void Viewer::end(Ending ending) {
    m_ending = std::move(ending);
    g_main_loop_quit(m_loop.get());
}

} // namespace

Ending run(const Arguments& arguments) {
    try {
        return Viewer(arguments).run();
    } catch (const std::exception& wrong) {
        return {1, std::string("kestrin-view: ") + wrong.what()};
    }
}

Ending forgetPermissions() {
    const auto wrong = gtk::PermissionFile::ofApplication(kApplicationId).forget();
    return wrong ? Ending{1, "kestrin-view: " + *wrong}
                 : Ending{0, "kestrin-view: the answers are forgotten; it asks again"};
}

} // namespace kestrin::view
