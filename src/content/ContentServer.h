#pragma once

#include "content/Application.h"
#include "content/Form.h"
#include "content/ServerOptions.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kestrin::content {

class ServerRun;

/// Serves one application over HTTPS, from a thread of its own, with a certificate made when it starts:
///
///     GET  /api/v2/application/ID                     the application's record, feature flags included
///     GET  /api/v2/application/ID/appkey              its key string, in the direct form
///     GET  /api/v2/application/ID/triggerbundleios    its triggers, and where their pictures are
///     GET  /api/v2/application/ID/scene               its scenes; of one title with ?filter[title]=TITLE
///     GET  /api/v2/application/ID/page                its pages, likewise
///     POST /api/v2/triggersnap/find                   the trigger that a picture shows; with a look-up only
///     POST /api/v2/triggertext/find                   the text that a picture shows, likewise
///     GET  /template/...                              the files of its page
///     GET  /picture/...                               the pictures of its triggers
///
/// The application is given, or described by an application folder; then it is read again as the folder
/// changes. While the folder is broken the last good state is served.
///
/// Which form to use. Settings keep the template's URL as it is, port included, but take only its host for
/// look-ups, without the port: from "https://127.0.0.1:41234/template/index.html" they ask
/// "https://127.0.0.1/api/v2/...", which reaches this server through the host map entry of the same form,
/// "127.0.0.1=127.0.0.1:41234". So give the host view `keyString(Form::Direct)` and the network layer
/// `hostMapEntry(Form::Direct)`: the web view, which knows no host map, loads the page by its port. The
/// mapped form is for clients all of whose requests go through the host map, and for a page behind a real
/// name and port 443.
///
/// One thread at a time may call a server's operations.
class ContentServer {
  public:
    explicit ContentServer(ApplicationSource source, ServerOptions options = {});
    /// Stops.
    ~ContentServer();
    ContentServer(const ContentServer&) = delete;
    ContentServer& operator=(const ContentServer&) = delete;

    /// When it returns nothing, the server listens and its id, port and texts are known. Otherwise the text
    /// says in one line what stands in the way. A server that was stopped can be started again.
    [[nodiscard]] std::optional<std::string> start();
    /// Ends every connection, joins the thread and frees the port. Waits for none of the clients.
    void stop();
    bool isRunning() const { return m_run != nullptr; }

    /// The following are empty, or 0, while the server does not run.
    std::uint16_t port() const;
    std::string applicationId() const;
    /// "https://127.0.0.1:41234/template/index.html" or "https://content.kestrin.test/template/index.html".
    std::string templateUrl(Form form) const;
    /// What the settings are made of: base64 of JSON with the template's URL and a base command for it.
    std::string keyString(Form form) const;
    /// "HOST=ADDRESS:PORT", for the network layer's host map.
    std::string hostMapEntry(Form form = Form::Mapped) const;

  private:
    const ApplicationSource m_source;
    const ServerOptions m_options;
    std::unique_ptr<ServerRun> m_run;
};

} // namespace kestrin::content
