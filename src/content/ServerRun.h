#pragma once

#include "content/Acceptor.h"
#include "content/Application.h"
#include "content/Connections.h"
#include "content/GPointer.h"
#include "content/ListeningSocket.h"
#include "content/RequestHandler.h"
#include "content/ServerOptions.h"
#include "content/Watch.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace kestrin::content {

/// One run of a content server, from a start that succeeded to its stop. What is made here is never changed
/// while the thread serves, but for the stopping flag and the handler of what an application folder
/// describes.
class ServerRun {
  public:
    /// Listens when it returns; throws std::runtime_error.
    ServerRun(ApplicationSource source, const ServerOptions& options);
    /// Ends all connections and joins the thread.
    ~ServerRun();
    ServerRun(const ServerRun&) = delete;
    ServerRun& operator=(const ServerRun&) = delete;

    std::shared_ptr<const RequestHandler> current() const { return m_handler.get(); }
    std::uint16_t port() const { return m_endpoint.port; }
    /// "ADDRESS:PORT"
    std::string endpoint() const;

  private:
    void setUp();
    void serve();
    void reload();
    std::shared_ptr<RequestHandler> handlerOf(Application application);
    void say(const std::string& line) const;

    const ApplicationSource m_source;
    const ServerOptions m_options;
    GPointer<GSocket> m_listening;
    const Endpoint m_endpoint;
    const GHandle<GMainContext, g_main_context_unref> m_context;
    std::optional<Lookups> m_lookups;
    CurrentHandler m_handler;
    std::string m_complaint; // what is wrong with the folder as it now is
    std::optional<Connections> m_connections;
    std::optional<Acceptor> m_acceptor;
    Watch m_reload;
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

} // namespace kestrin::content
