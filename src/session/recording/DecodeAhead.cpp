#include "session/recording/DecodeAhead.h"

#include <pthread.h>

#include <utility>

namespace kestrin::session {

namespace {

constexpr int kAhead = 4;

}

DecodeAhead::DecodeAhead(std::unique_ptr<VideoReader> video, int width, int height)
    : m_video(std::move(video)), m_size(m_video->size()) {
    for (int i = 0; i < kAhead; ++i)
        m_free.push_back(std::make_unique<Nv12Buffer>(width, height));
    m_thread = std::thread([this] { work(); });
}

DecodeAhead::~DecodeAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool DecodeAhead::take(std::size_t index, Nv12Buffer& picture) {
    std::unique_lock lock(m_mutex);
    if (index != m_first) {
        for (Decoded& decoded : m_ready)
            m_free.push_back(std::move(decoded.picture));
        m_ready.clear();
        m_first = index;
        ++m_jumps;
        m_changed.notify_all();
    }
    m_changed.wait(lock, [this] { return !m_ready.empty(); });
    Decoded decoded = std::move(m_ready.front());
    m_ready.pop_front();
    ++m_first;
    std::swap(picture, *decoded.picture);
    m_free.push_back(std::move(decoded.picture));
    m_changed.notify_all();
    return decoded.isFilled;
}

void DecodeAhead::work() {
    pthread_setname_np(pthread_self(), "decoder");
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(
            lock, [this] { return m_isStopping || (!m_free.empty() && m_first + m_ready.size() < m_size); });
        if (m_isStopping)
            return;
        const std::size_t index = m_first + m_ready.size();
        const unsigned jumps = m_jumps;
        Decoded decoded{std::move(m_free.back())};
        m_free.pop_back();
        lock.unlock();
        decoded.isFilled = m_video->decode(index, *decoded.picture);
        lock.lock();
        if (jumps == m_jumps)
            m_ready.push_back(std::move(decoded));
        else
            m_free.push_back(std::move(decoded.picture));
        m_changed.notify_all();
    }
}

} // namespace kestrin::session
