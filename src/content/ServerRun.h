#pragma once

#include "content/Acceptor.h"
#include "content/Application.h"
#include "content/Connections.h"
#include "content/Form.h"
#include "content/GPointer.h"
#include "content/ListeningSocket.h"
#include "content/RequestHandler.h"
#include "content/ServerOptions.h"
#include "content/TemplateFiles.h"

#include <atomic>
#include <optional>
#include <string>
#include <thread>

namespace kestrin::content {

/// One run of a content server, from a start that succeeded to its stop. What is made here is never changed
/// while the thread serves, but for the stopping flag.
class ServerRun {
  public:
    /// `application` is checked. Listens when it returns; throws std::runtime_error.
    ServerRun(Application application, const ServerOptions& options);
    /// Ends all connections and joins the thread.
    ~ServerRun();
    ServerRun(const ServerRun&) = delete;
    ServerRun& operator=(const ServerRun&) = delete;

    const Application& application() const { return m_application; }
    std::uint16_t port() const { return m_endpoint.port; }
    /// "ADDRESS:PORT"
    std::string endpoint() const;
    /// Without a port.
    std::string host(Form form) const;
    std::string templateUrl(Form form) const;

  private:
    void setUp(const ServerOptions& options);
    void serve();

    const Application m_application;
    const TemplateFiles m_files;
    GPointer<GSocket> m_listening;
    const Endpoint m_endpoint;
    const RequestHandler m_handler;
    const GHandle<GMainContext, g_main_context_unref> m_context;
    std::optional<Connections> m_connections;
    std::optional<Acceptor> m_acceptor;
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

} // namespace kestrin::content
