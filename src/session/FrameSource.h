#pragma once

#include "platform/ArSession.h"
#include "session/Nv12Buffer.h"
#include "session/PinholeCamera.h"

#include <optional>
#include <string>

namespace kestrin::session {

/// What happened to the anchors from one frame to the next.
struct AnchorChanges {
    platform::ArAnchors added, updated, removed;
};

/// What a source says of one frame.
struct SourcedFrame {
    double time = 0;             ///< seconds since the session began
    platform::Matrix sensorPose; ///< camera to world, as the picture was taken
    platform::Intrinsics intrinsics;
    platform::TrackingReason reason = platform::TrackingReason::none;
    std::optional<double> ambientIntensity; ///< lumens
    AnchorChanges anchors;
};

/// Where the frames of a session come from: one after the other, each at its time. Thread: session, unless
/// said otherwise; it is made elsewhere.
class FrameSource {
  public:
    virtual ~FrameSource() = default;
    /// What holds for all frames. Thread: any.
    virtual CameraModel model() const = 0;
    /// Frames a second, about. Thread: any.
    virtual double rate() const = 0;

    /// Called once, first. Why no frame can come; nothing when all is well.
    virtual std::optional<std::string> open() = 0;
    /// A run begins, with what `ArSession::run` was given.
    virtual void begin(const platform::ArConfiguration& configuration, unsigned options) = 0;
    /// The run is over, and no frame is asked for until the next begins.
    virtual void rest() {}
    /// The anchor is removed with the next frame, and may then be found afresh.
    virtual void forget(const std::string& identifier) = 0;

    /// The time of the next frame; none at the end.
    virtual std::optional<double> nextTime() const = 0;
    /// Passes over the next frame. What happened to anchors in it is told with a later one.
    virtual void skip() = 0;
    /// Gives the next frame and fills the picture; none when just this frame cannot be had. `orientation` is
    /// the interface orientation that holds for the frame.
    virtual std::optional<SourcedFrame> next(int orientation, Nv12Buffer& picture) = 0;
};

} // namespace kestrin::session
