#include "content/ContentServer.h"

#include "content/Records.h"
#include "content/ServerRun.h"

#include <stdexcept>
#include <utility>

namespace kestrin::content {

ContentServer::ContentServer(ApplicationSource source, ServerOptions options)
    : m_source(std::move(source)), m_options(std::move(options)) {}

ContentServer::~ContentServer() = default;

std::optional<std::string> ContentServer::start() {
    if (m_run)
        return "the content server already runs";
    try {
        m_run = std::make_unique<ServerRun>(m_source, m_options);
        return std::nullopt;
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

void ContentServer::stop() { m_run.reset(); }

std::uint16_t ContentServer::port() const { return m_run ? m_run->port() : 0; }

std::string ContentServer::applicationId() const { return m_run ? m_run->current()->application().id : ""; }

std::string ContentServer::templateUrl(Form form) const {
    return m_run ? m_run->current()->templateUrl(form) : "";
}

std::string ContentServer::keyString(Form form) const {
    if (!m_run)
        return "";
    const auto current = m_run->current();
    return content::keyString(current->application(), current->templateUrl(form));
}

std::string ContentServer::hostMapEntry(Form form) const {
    return m_run ? m_run->current()->host(form) + "=" + m_run->endpoint() : "";
}

} // namespace kestrin::content
