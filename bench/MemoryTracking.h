#pragma once

#include "platform/ArSession.h"

#include <memory>

namespace kestrin::bench {

struct MemoryPictures {
    int width = 640, height = 480;
    platform::Image print; ///< in the middle of each picture; smaller than it
};

/// A world-tracking source whose frames lie in memory: the thread that calls `send` is the session
/// thread. Each picture is of one grey that differs from that of the picture before. Thread: any; `send` one
/// call at a time.
class MemoryTracking : public platform::WorldTracking {
  public:
    explicit MemoryTracking(const MemoryPictures& of);
    ~MemoryTracking() override;

    bool isSupported() const override { return true; }
    /// The one session.
    std::shared_ptr<platform::ArSession> makeSession() override;

    /// Tells the session's delegate of a new frame; false while the session does not run.
    bool send(double timestamp);

  private:
    class Session;
    const std::shared_ptr<Session> m_session;
};

} // namespace kestrin::bench
