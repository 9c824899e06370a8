#pragma once

#include "platform/ArSession.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kestrin::session::test {

/// The pixels of the picture, without what pads its rows.
inline std::vector<std::uint8_t> pixelsOf(const platform::PixelBuffer& picture) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < 2; ++i) {
        const platform::PixelPlane plane = picture.plane(i);
        for (int y = 0; y < plane.height; ++y) {
            const std::uint8_t* row = plane.data + std::ptrdiff_t(plane.stride) * y;
            pixels.insert(pixels.end(), row, row + plane.width * (i + 1));
        }
    }
    return pixels;
}

/// A delegate that keeps what it was told: "frame", "+ID", "~ID", "-ID".
class Listener final : public platform::ArSessionDelegate {
  public:
    std::function<void(const std::shared_ptr<const platform::ArFrame>&)> onFrame;

    void didUpdateFrame(const std::shared_ptr<const platform::ArFrame>& frame) override {
        note("frame");
        if (onFrame)
            onFrame(frame);
    }
    void didAddAnchors(const platform::ArAnchors& anchors) override { noteAll("+", anchors); }
    void didUpdateAnchors(const platform::ArAnchors& anchors) override { noteAll("~", anchors); }
    void didRemoveAnchors(const platform::ArAnchors& anchors) override { noteAll("-", anchors); }

    std::vector<std::string> events() const {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }
    std::size_t count(const std::string& event) const {
        const std::lock_guard lock(m_mutex);
        return std::size_t(std::count(m_events.begin(), m_events.end(), event));
    }
    bool waitFor(const std::string& event, std::size_t times) const {
        std::unique_lock lock(m_mutex);
        return m_noted.wait_for(lock, std::chrono::seconds(20), [&] {
            return std::size_t(std::count(m_events.begin(), m_events.end(), event)) >= times;
        });
    }

  private:
    void note(const std::string& event) {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
        m_noted.notify_all();
    }
    void noteAll(const std::string& sign, const platform::ArAnchors& anchors) {
        for (const auto& anchor : anchors)
            note(sign + anchor->identifier);
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_noted;
    std::vector<std::string> m_events;
};

} // namespace kestrin::session::test
