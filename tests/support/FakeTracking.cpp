#include "support/FakeTracking.h"

#include <utility>

namespace kestrin::test {

using platform::ArAnchors;

void FakeArSession::setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) {
    const std::lock_guard lock(m_mutex);
    m_delegate = std::move(delegate);
}

void FakeArSession::run(const platform::ArConfiguration& configuration, unsigned options) {
    const std::lock_guard lock(m_mutex);
    m_runs.push_back({configuration, options});
    m_running = true;
    if (!m_frame)
        m_frame = makeFrame(0);
}

void FakeArSession::pause() {
    const std::lock_guard lock(m_mutex);
    m_running = false;
}

std::shared_ptr<const platform::ArFrame> FakeArSession::currentFrame() const {
    const std::lock_guard lock(m_mutex);
    return m_frame;
}

std::optional<platform::ArConfiguration> FakeArSession::configuration() const {
    const std::lock_guard lock(m_mutex);
    return m_runs.empty() ? std::nullopt : std::optional(m_runs.back().configuration);
}

void FakeArSession::removeAnchor(const std::string& identifier) {
    const std::lock_guard lock(m_mutex);
    m_removedAnchors.push_back(identifier);
}

std::shared_ptr<platform::ArSessionDelegate> FakeArSession::listener() const {
    const std::lock_guard lock(m_mutex);
    return m_running ? m_delegate.lock() : nullptr;
}

void FakeArSession::send(std::shared_ptr<const platform::ArFrame> frame) {
    const auto delegate = listener();
    if (!delegate)
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_frame = frame;
    }
    delegate->didUpdateFrame(frame);
}

void FakeArSession::add(const ArAnchors& anchors) {
    if (const auto delegate = listener())
        delegate->didAddAnchors(anchors);
}

void FakeArSession::update(const ArAnchors& anchors) {
    if (const auto delegate = listener())
        delegate->didUpdateAnchors(anchors);
}

void FakeArSession::remove(const ArAnchors& anchors) {
    if (const auto delegate = listener())
        delegate->didRemoveAnchors(anchors);
}

bool FakeArSession::isRunning() const {
    const std::lock_guard lock(m_mutex);
    return m_running;
}

std::vector<FakeArSession::Run> FakeArSession::runs() const {
    const std::lock_guard lock(m_mutex);
    return m_runs;
}

std::vector<std::string> FakeArSession::removedAnchors() const {
    const std::lock_guard lock(m_mutex);
    return m_removedAnchors;
}

std::shared_ptr<platform::ArSession> FakeWorldTracking::makeSession() {
    const std::lock_guard lock(m_mutex);
    return m_newest = std::make_shared<FakeArSession>();
}

std::shared_ptr<FakeArSession> FakeWorldTracking::newest() const {
    const std::lock_guard lock(m_mutex);
    return m_newest;
}

std::shared_ptr<platform::ArFrame> makeFrame(double timestamp, const platform::Matrix& pose) {
    const auto camera = std::make_shared<FakeArCamera>();
    camera->pose = pose;
    auto frame = std::make_shared<platform::ArFrame>();
    frame->timestamp = timestamp;
    frame->camera = camera;
    return frame;
}

} // namespace kestrin::test
