#include "content/ServerRun.h"

#include "content/Certificate.h"
#include "content/Records.h"

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

ServerRun::ServerRun(Application application, const ServerOptions& options)
    : m_application(std::move(application)), m_files(m_application.page),
      m_listening(listenOn(options.address, options.port)), m_endpoint(endpointOf(m_listening.get())),
      m_handler(m_application, m_files, keyString(m_application, templateUrl(Form::Direct))),
      m_context(g_main_context_new()) {
    setUp(options);
    m_thread = std::thread([this] { serve(); });
}

ServerRun::~ServerRun() {
    m_stopping = true;
    g_main_context_wakeup(m_context.get());
    m_thread.join();
}

// On the starting thread, so that every failure is known before start returns.
void ServerRun::setUp(const ServerOptions& options) {
    const ContextScope scope(m_context.get());
    m_connections.emplace(ConnectionSetup{
        m_handler, makeCertificate(certificateNames(m_application, options)), options.limits});
    m_acceptor.emplace(std::move(m_listening),
                       [this](GPointer<GSocket> socket) { m_connections->admit(std::move(socket)); });
}

void ServerRun::serve() {
    const ContextScope scope(m_context.get());
    while (!m_stopping)
        g_main_context_iteration(m_context.get(), TRUE);
    m_acceptor.reset();
    m_connections.reset();
}

std::string ServerRun::endpoint() const { return m_endpoint.address + ":" + std::to_string(m_endpoint.port); }

std::string ServerRun::host(Form form) const {
    return form == Form::Direct ? m_endpoint.address : m_application.hostName;
}

std::string ServerRun::templateUrl(Form form) const {
    const GText page(g_uri_escape_string(m_files.index().c_str(), nullptr, FALSE));
    return "https://" + (form == Form::Direct ? endpoint() : host(form)) + "/template/" + page.get();
}

} // namespace kestrin::content
