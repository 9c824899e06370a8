#pragma once

#include "platform/ArSession.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kestrin::test {

/// A camera that answers what the test says.
struct FakeArCamera : platform::ArCamera {
    platform::Matrix transform() const override { return pose; }
    platform::TrackingReason trackingReason() const override { return reason; }
    platform::Intrinsics intrinsics() const override { return {500, 500, 320, 240}; }
    platform::Size imageResolution() const override { return {640, 480}; }
    platform::Matrix projection(int orientation, platform::Size viewport, double zNear,
                                double zFar) const override {
        return project(orientation, viewport, zNear, zFar);
    }
    /// Sees a point where its x and y say.
    platform::Point projectPoint(const platform::Vector3& point, int, platform::Size) const override {
        return {point.x, point.y};
    }
    platform::AffineTransform displayTransform(int orientation, platform::Size viewport) const override {
        return display(orientation, viewport);
    }

    platform::Matrix pose = platform::Matrix::identity();
    platform::TrackingReason reason = platform::TrackingReason::none;
    std::function<platform::Matrix(int, platform::Size, double, double)> project =
        [](int, platform::Size, double, double) { return platform::Matrix::identity(); };
    std::function<platform::AffineTransform(int, platform::Size)> display = [](int, platform::Size) {
        return platform::AffineTransform{1, 0, 0, 1, 0, 0};
    };
};

/// A frame without anchors.
inline std::shared_ptr<platform::ArFrame> makeFrame(double timestamp) {
    auto frame = std::make_shared<platform::ArFrame>();
    frame->timestamp = timestamp;
    frame->camera = std::make_shared<FakeArCamera>();
    return frame;
}

/// A session whose frames and anchors the test sends, on whatever thread it calls from. What is sent while
/// the session does not run is dropped.
class FakeArSession : public platform::ArSession {
  public:
    struct Run {
        platform::ArConfiguration configuration;
        unsigned options;
    };

    void setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) override {
        const std::lock_guard lock(m_mutex);
        m_delegate = std::move(delegate);
    }
    void run(const platform::ArConfiguration& configuration, unsigned options) override {
        const std::lock_guard lock(m_mutex);
        m_runs.push_back({configuration, options});
        m_running = true;
        if (!m_frame)
            m_frame = makeFrame(0);
    }
    void pause() override {
        const std::lock_guard lock(m_mutex);
        m_running = false;
    }
    std::shared_ptr<const platform::ArFrame> currentFrame() const override {
        const std::lock_guard lock(m_mutex);
        return m_frame;
    }
    std::optional<platform::ArConfiguration> configuration() const override {
        const std::lock_guard lock(m_mutex);
        return m_runs.empty() ? std::nullopt : std::optional(m_runs.back().configuration);
    }
    void removeAnchor(const std::string& identifier) override {
        const std::lock_guard lock(m_mutex);
        m_removedAnchors.push_back(identifier);
    }

    /// Makes the frame the newest one, then tells the delegate.
    void send(const std::shared_ptr<const platform::ArFrame>& frame) {
        tell([&](auto& delegate) {
            {
                const std::lock_guard lock(m_mutex);
                m_frame = frame;
            }
            delegate.didUpdateFrame(frame);
        });
    }
    void add(const platform::ArAnchors& anchors) {
        tell([&](auto& delegate) { delegate.didAddAnchors(anchors); });
    }
    void update(const platform::ArAnchors& anchors) {
        tell([&](auto& delegate) { delegate.didUpdateAnchors(anchors); });
    }
    void remove(const platform::ArAnchors& anchors) {
        tell([&](auto& delegate) { delegate.didRemoveAnchors(anchors); });
    }

    bool isRunning() const {
        const std::lock_guard lock(m_mutex);
        return m_running;
    }
    std::vector<Run> runs() const {
        const std::lock_guard lock(m_mutex);
        return m_runs;
    }
    std::vector<std::string> removedAnchors() const {
        const std::lock_guard lock(m_mutex);
        return m_removedAnchors;
    }

  private:
    template <class What>
    void tell(const What& what) {
        std::unique_lock lock(m_mutex);
        const auto delegate = m_running ? m_delegate.lock() : nullptr;
        lock.unlock();
        if (delegate)
            what(*delegate);
    }

    mutable std::mutex m_mutex;
    std::weak_ptr<platform::ArSessionDelegate> m_delegate;
    std::vector<Run> m_runs;
    std::vector<std::string> m_removedAnchors;
    std::shared_ptr<const platform::ArFrame> m_frame;
    bool m_running = false;
};

class FakeWorldTracking : public platform::WorldTracking {
  public:
    bool isSupported() const override { return supported; }
    std::shared_ptr<platform::ArSession> makeSession() override {
        const std::lock_guard lock(m_mutex);
        return m_newest = std::make_shared<FakeArSession>();
    }
    /// The session made last; null before.
    std::shared_ptr<FakeArSession> newest() const {
        const std::lock_guard lock(m_mutex);
        return m_newest;
    }

    bool supported = true;

  private:
    mutable std::mutex m_mutex;
    std::shared_ptr<FakeArSession> m_newest;
};

} // namespace kestrin::test
