#include "session/recording/DecodeAhead.h"

#include <pthread.h>

#include <utility>

namespace kestrin::session {

namespace {

constexpr std::size_t kAhead = 3;

}

DecodeAhead::DecodeAhead(std::unique_ptr<VideoReader> video)
    : m_video(std::move(video)), m_size(m_video->size()), m_thread([this] { work(); }) {}

DecodeAhead::~DecodeAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

VideoReader::Decoded DecodeAhead::take(std::size_t index) {
    std::unique_lock lock(m_mutex);
    if (index != m_first) {
        m_ready.clear();
        m_first = index;
        ++m_jumps;
        m_changed.notify_all();
    }
    m_changed.wait(lock, [this] { return !m_ready.empty(); });
    VideoReader::Decoded decoded = std::move(m_ready.front());
    m_ready.pop_front();
    ++m_first;
    m_changed.notify_all();
    return decoded;
}

void DecodeAhead::work() {
    pthread_setname_np(pthread_self(), "decoder");
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] {
            return m_isStopping || (m_ready.size() < kAhead && m_first + m_ready.size() < m_size);
        });
        if (m_isStopping)
            return;
        const std::size_t index = m_first + m_ready.size();
        const unsigned jumps = m_jumps;
        lock.unlock();
        VideoReader::Decoded decoded = m_video->decode(index);
        lock.lock();
        if (jumps != m_jumps)
            continue;
        m_ready.push_back(std::move(decoded));
        m_changed.notify_all();
    }
}

} // namespace kestrin::session
