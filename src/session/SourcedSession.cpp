#include "session/SourcedSession.h"

#include <utility>

namespace kestrin::session {

SourcedSession::SourcedSession(std::unique_ptr<FrameSource> source, SessionOptions options)
    : m_loop(std::make_shared<SessionLoop>(std::move(source), std::move(options))) {}

SourcedSession::~SourcedSession() {
    m_loop->stop();
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else if (m_thread.joinable())
        m_thread.join();
}

void SourcedSession::setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) {
    m_loop->setDelegate(std::move(delegate));
}

void SourcedSession::run(const platform::ArConfiguration& configuration, unsigned options) {
    m_loop->run(configuration, options);
    std::call_once(m_started, [this] { m_thread = std::thread([loop = m_loop] { loop->work(); }); });
}

void SourcedSession::pause() { m_loop->pause(); }

std::shared_ptr<const platform::ArFrame> SourcedSession::currentFrame() const {
    return m_loop->currentFrame();
}

std::optional<platform::ArConfiguration> SourcedSession::configuration() const {
    return m_loop->configuration();
}

void SourcedSession::removeAnchor(const std::string& identifier) { m_loop->forget(identifier); }

bool SourcedSession::step(double timeoutSeconds) { return m_loop->step(timeoutSeconds); }

std::uint64_t SourcedSession::frames() const { return m_loop->frames(); }

bool SourcedSession::hasEnded() const { return m_loop->hasEnded(); }

} // namespace kestrin::session
