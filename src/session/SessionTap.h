#pragma once

#include "session/FrameSource.h"

#include <memory>

namespace kestrin::session {

/// A frame as it was delivered.
struct TappedFrame {
    CameraModel camera;
    double rate;                 ///< of the source
    SourcedFrame frame;          ///< without its changes to anchors
    platform::ArAnchors anchors; ///< all that there are
    std::shared_ptr<const Nv12Buffer> picture;
};

/// Is told of every frame that sessions deliver, beside their delegates.
class SessionTap {
  public:
    virtual ~SessionTap() = default;
    /// Must not wait. Thread: session, that of one session at a time.
    virtual void deliver(TappedFrame frame) = 0;
    /// How many pictures it holds at most, which the session then has more of. Thread: any.
    virtual int pictures() const = 0;
};

} // namespace kestrin::session
