#include "Stage.h"

#include "bridge/KestrinWebEvent.h"
#include "core/KestrinCVSession.h"
#include "linux/network/HostMap.h"
#include "linux/toolkit/Capture.h"
#include "linux/toolkit/Widget.h"
#include "platform/WebView.h"
#include "services/util/Json.h"
#include "session/SimulatedTracking.h"
#include "support/TemporaryFolder.h"

#include <boost/json/serialize.hpp>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

namespace kestrin::test {

namespace {
std::string queryOf(const StageOptions& options) {
    std::string query;
    for (const auto& [name, value] : options.query) {
        const std::string text = boost::json::serialize(value);
        const gtk::GText escaped(g_uri_escape_string(text.c_str(), nullptr, FALSE));
        query += (query.empty() ? '?' : '&') + name + '=' + escaped.get();
    }
    return query;
}

std::shared_ptr<session::SourcedTracking> trackingOf(const StageOptions& options,
                                                     const platform::InterfaceOrientation& orientation) {
    if (options.tracking)
        return options.tracking(orientation);
    session::SimulatedOptions simulation;
    simulation.room = options.room;
    simulation.session.orientation = &orientation;
    return std::make_shared<session::SimulatedTracking>(simulation);
}

content::ServerOptions serverOptions(const StageOptions& options) {
    content::ServerOptions server;
    server.lookup = options.lookup;
    return server;
}

} // namespace

const std::filesystem::path& home() {
    struct Home : TemporaryFolder {
        Home() {
            write("user-dirs.dirs", "XDG_PICTURES_DIR=\"" + path().string() + "\"\n");
            for (const char* kind : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"})
                g_setenv(kind, path().c_str(), TRUE);
        }
    };
    static const Home home;
    return home.path();
}

Stage::Stage(StageOptions options)
    : m_options(std::move(options)), m_server(m_options.application, serverOptions(m_options)) {
    home();
    if (const auto wrong = m_server.start())
        throw std::runtime_error(*wrong);
    installPlatform();
    open();
    start();
}

Stage::~Stage() { close(); }

void Stage::installPlatform() {
    gtk::Options linux;
    linux.orientation = m_options.orientation;
    linux.granted = m_options.granted;
    linux.hostMap =
        gtk::HostMap::parse(m_server.hostMapEntry(content::Form::Direct) + ',' + m_options.hostMap);
    linux.worldTracking = [&](const platform::InterfaceOrientation& orientation) {
        return m_tracking = trackingOf(m_options, orientation);
    };
    auto platform = gtk::LinuxPlatform::make(linux);
    if (!platform)
        throw std::runtime_error("there is no display");
    platform::installPlatform(platform);
}

void Stage::open() {
    m_window = gtk::GRef<GtkWindow>::refSink(GTK_WINDOW(gtk_window_new()));
    gtk_window_set_decorated(m_window.get(), FALSE);
    gtk_window_set_default_size(m_window.get(), m_options.width, m_options.height);
    m_view = KestrinCVSession::initKestrinView();
    gtk_window_set_child(m_window.get(), gtk::widget(*m_view));
    gtk_window_present(m_window.get());
}

void Stage::close() {
    m_view->destroy();
    gtk_window_destroy(m_window.get());
    m_view.reset();
    runFor(0.05);
}

KestrinSettings Stage::settings() const {
    auto settings = KestrinSettings::initWithKeyString(m_server.keyString(content::Form::Direct));
    settings.setTemplateUrl(settings.getTemplateUrl() + queryOf(m_options));
    return settings;
}

void Stage::start() {
    m_view->setup(settings());
    m_view->registerForEventCallback(std::int32_t(KestrinWebEvent::stringToEvent("onWebUpdate")),
                                     [this](const boost::json::object& event) {
                                         const auto* data = findMember(event, {"data"});
                                         if (data && data->is_object())
                                             keep(data->get_object());
                                     });
    m_view->start();
}

void Stage::reopen() {
    close();
    open();
    start();
}

void Stage::keep(const boost::json::object& report) {
    m_report = report;
    const auto* event = findMember(report, {"event"});
    const auto* value = findMember(report, {"value"});
    if (event && event->is_string())
        m_told[std::string(event->get_string())].push_back(value ? *value : nullptr);
}

void Stage::evaluate(const std::string& script) {
    std::dynamic_pointer_cast<platform::WebView>(m_view->getContentView())->evaluate(script);
}

boost::json::value Stage::answer(const std::string& script, const std::string& event) {
    const auto& heard = m_told[event];
    const auto before = heard.size();
    evaluate(script);
    return runUntil([&] { return heard.size() > before; }, kPatience) ? heard[before] : nullptr;
}

bool Stage::runUntil(const std::function<bool()>& done, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        if (!g_main_context_iteration(nullptr, FALSE))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

void Stage::runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

bool Stage::step() {
    std::atomic<int> outcome = -1;
    std::thread stepping([&] { outcome = m_tracking->step() ? 1 : 0; });
    runUntil([&] { return outcome >= 0; }, 30);
    stepping.join();
    return outcome == 1;
}

platform::Image Stage::capture(platform::View& view) {
    std::optional<platform::Image> picture;
    gtk::captureWhenPainted(gtk::widget(view), platform::platform().dispatch(),
                            [&](const platform::Image& image) { picture = image; });
    runUntil([&] { return picture.has_value(); });
    return picture.value_or(platform::Image());
}

content::Application showing(const std::string& page) {
    content::Application application;
    application.page = std::filesystem::path(KESTRIN_WEB_DIST) / page;
    return application;
}

} // namespace kestrin::test
