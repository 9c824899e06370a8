#include "content/ServerRun.h"

#include "content/ApplicationFile.h"
#include "content/Certificate.h"

#include <algorithm>
#include <utility>

namespace kestrin::content {
namespace {

// Makes a main context the one in which GLib works for the calling thread.
class ContextScope {
  public:
    explicit ContextScope(GMainContext* context) : m_context(context) {
        g_main_context_push_thread_default(context);
    }
    ~ContextScope() { g_main_context_pop_thread_default(m_context); }
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;

  private:
    GMainContext* const m_context;
};

std::vector<std::string> certificateNames(const Application& application, const ServerOptions& options) {
    std::vector<std::string> names{application.hostName, "localhost", "127.0.0.1", "::1"};
    names.insert(names.end(), options.hostNames.begin(), options.hostNames.end());
    if (std::find(names.begin(), names.end(), options.address) == names.end())
        names.push_back(options.address);
    return names;
}

} // namespace

ServerRun::ServerRun(ApplicationSource source, const ServerOptions& options)
    : m_source(std::move(source)), m_options(options), m_listening(listenOn(options.address, options.port)),
      m_endpoint(endpointOf(m_listening.get())), m_context(g_main_context_new()) {
    if (options.lookup)
        m_lookups.emplace(options.lookup, m_context.get());
    m_handler.set(handlerOf(readApplication(m_source)));
    setUp();
    m_thread = std::thread([this] { serve(); });
}

ServerRun::~ServerRun() {
    m_stopping = true;
    g_main_context_wakeup(m_context.get());
    m_thread.join();
}

// On the starting thread, so that every failure is known before start returns.
void ServerRun::setUp() {
    const ContextScope scope(m_context.get());
    m_connections.emplace(
        ConnectionSetup{m_handler, makeCertificate(certificateNames(current()->application(), m_options)),
                        m_options.limits, m_options.log});
    m_acceptor.emplace(std::move(m_listening),
                       [this](GPointer<GSocket> socket) { m_connections->admit(std::move(socket)); });
    if (std::holds_alternative<ApplicationFolder>(m_source))
        m_reload = Watch::every(m_options.reloadPeriod, [this] { reload(); });
}

void ServerRun::serve() {
    const ContextScope scope(m_context.get());
    while (!m_stopping)
        g_main_context_iteration(m_context.get(), TRUE);
    m_reload = Watch();
    m_acceptor.reset();
    m_connections.reset();
}

std::shared_ptr<RequestHandler> ServerRun::handlerOf(Application application) {
    return std::make_shared<RequestHandler>(std::move(application), endpoint(),
                                            m_lookups ? &*m_lookups : nullptr);
}

std::string ServerRun::endpoint() const { return m_endpoint.address + ":" + std::to_string(m_endpoint.port); }

void ServerRun::reload() {
    std::string complaint;
    try {
        Application application = readApplication(m_source);
        const bool isNew = application != current()->application();
        if (isNew)
            m_handler.set(handlerOf(std::move(application)));
        if (isNew || !m_complaint.empty())
            say("the application was read again");
    } catch (const std::exception& wrong) {
        complaint = wrong.what();
    }
    if (!complaint.empty() && complaint != m_complaint)
        say(complaint + " (what was there before is still served)");
    m_complaint = std::move(complaint);
}

void ServerRun::say(const std::string& line) const {
    if (m_options.log)
        m_options.log(line);
}

} // namespace kestrin::content
