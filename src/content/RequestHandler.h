#pragma once

#include "content/Application.h"
#include "content/FileReply.h"
#include "content/Form.h"
#include "content/Lookups.h"
#include "content/TemplateFiles.h"

#include <libsoup/soup.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::content {

/// Answers the requests of one application's clients. Never changes after its construction.
class RequestHandler {
  public:
    /// `application` is checked; `endpoint` is the server's "ADDRESS:PORT"; `lookups`, which outlives the
    /// handler, may be null: then look-ups are not answered. Throws std::runtime_error when the page cannot
    /// be read.
    RequestHandler(Application application, std::string endpoint, Lookups* lookups);

    /// Answers any request. The server passes paths on as they came, escapes included.
    void answer(SoupServerMessage* message, BreakOff breakOff) const;

    /// Whether a request whose head has come is answered by what its body says.
    bool readsBody(SoupServerMessage* message) const;

    const Application& application() const { return *m_application; }
    /// Without a port.
    std::string host(Form form) const;
    std::string templateUrl(Form form) const;

  private:
    using Segments = std::vector<std::string>;

    std::optional<Sought> lookUpIn(SoupServerMessage* message) const;
    void answerApplication(SoupServerMessage* message, const Segments& path) const;
    void answerTemplate(SoupServerMessage* message, const Segments& path, BreakOff breakOff) const;
    void answerPicture(SoupServerMessage* message, const Segments& path, BreakOff breakOff) const;
    std::string originFor(SoupServerMessage* message) const;

    const std::shared_ptr<const Application> m_application; // which a look-up under way shares
    const std::string m_endpoint;
    const TemplateFiles m_files;
    Lookups* const m_lookups;
};

/// The handler of the newest state of an application, replaced whole. A request is answered by the one that
/// it began with. Thread: any.
class CurrentHandler {
  public:
    std::shared_ptr<const RequestHandler> get() const {
        const std::lock_guard lock(m_mutex);
        return m_handler;
    }
    void set(std::shared_ptr<const RequestHandler> handler) {
        const std::lock_guard lock(m_mutex);
        m_handler = std::move(handler);
    }

  private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const RequestHandler> m_handler;
};

} // namespace kestrin::content
