#include "content/ContentServer.h"

#include "content/Records.h"
#include "content/ServerRun.h"

#include <stdexcept>
#include <utility>

namespace kestrin::content {

ContentServer::ContentServer(Application application, ServerOptions options)
    : m_application(std::move(application)), m_options(std::move(options)) {}

ContentServer::~ContentServer() = default;

std::optional<std::string> ContentServer::start() {
    if (m_run)
        return "the content server already runs";
    try {
        m_run = std::make_unique<ServerRun>(checked(m_application), m_options);
        return std::nullopt;
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

void ContentServer::stop() { m_run.reset(); }

std::uint16_t ContentServer::port() const { return m_run ? m_run->port() : 0; }

std::string ContentServer::applicationId() const { return m_run ? m_run->application().id : ""; }

std::string ContentServer::templateUrl(Form form) const { return m_run ? m_run->templateUrl(form) : ""; }

std::string ContentServer::keyString(Form form) const {
    return m_run ? content::keyString(m_run->application(), m_run->templateUrl(form)) : "";
}

std::string ContentServer::hostMapEntry(Form form) const {
    return m_run ? m_run->host(form) + "=" + m_run->endpoint() : "";
}

} // namespace kestrin::content
