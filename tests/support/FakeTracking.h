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
    platform::Intrinsics intrinsics() const override { return lens; }
    platform::Size imageResolution() const override { return resolution; }
    platform::Matrix projection(int orientation, platform::Size viewport, double zNear,
                                double zFar) const override {
        return project(orientation, viewport, zNear, zFar);
    }
    platform::Point projectPoint(const platform::Vector3& point, int orientation,
                                 platform::Size viewport) const override {
        return place(point, orientation, viewport);
    }
    platform::AffineTransform displayTransform(int orientation, platform::Size viewport) const override {
        return display(orientation, viewport);
    }

    platform::Matrix pose = platform::Matrix::identity();
    platform::TrackingReason reason = platform::TrackingReason::none;
    platform::Intrinsics lens{500, 500, 320, 240};
    platform::Size resolution{640, 480};
    std::function<platform::Matrix(int, platform::Size, double, double)> project =
        [](int, platform::Size, double, double) { return platform::Matrix::identity(); };
    std::function<platform::Point(const platform::Vector3&, int, platform::Size)> place =
        [](const platform::Vector3& point, int, platform::Size) {
            return platform::Point{point.x, point.y};
        };
    std::function<platform::AffineTransform(int, platform::Size)> display = [](int, platform::Size) {
        return platform::AffineTransform{1, 0, 0, 1, 0, 0};
    };
};

/// A session whose frames and anchors the test sends, on whatever thread it calls from. What is sent while
/// the session does not run is dropped.
class FakeArSession : public platform::ArSession {
  public:
    struct Run {
        platform::ArConfiguration configuration;
        unsigned options;
    };

    void setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) override;
    void run(const platform::ArConfiguration& configuration, unsigned options) override;
    void pause() override;
    std::shared_ptr<const platform::ArFrame> currentFrame() const override;
    std::optional<platform::ArConfiguration> configuration() const override;
    void removeAnchor(const std::string& identifier) override;

    /// Makes the frame the newest one, then tells the delegate.
    void send(std::shared_ptr<const platform::ArFrame> frame);
    void add(const platform::ArAnchors& anchors);
    void update(const platform::ArAnchors& anchors);
    void remove(const platform::ArAnchors& anchors);

    bool isRunning() const;
    std::vector<Run> runs() const;
    std::vector<std::string> removedAnchors() const;

  private:
    std::shared_ptr<platform::ArSessionDelegate> listener() const;

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
    std::shared_ptr<platform::ArSession> makeSession() override;
    /// The session made last; null before.
    std::shared_ptr<FakeArSession> newest() const;

    bool supported = true;

  private:
    mutable std::mutex m_mutex;
    std::shared_ptr<FakeArSession> m_newest;
};

/// A frame without anchors from a camera of that pose.
std::shared_ptr<platform::ArFrame> makeFrame(double timestamp,
                                             const platform::Matrix& pose = platform::Matrix::identity());

} // namespace kestrin::test
