#pragma once

#include "platform/ArSession.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace kestrin::bench {

/// A world-tracking source whose frames lie in memory, 640x480: the thread that calls `send` is the session
/// thread. Each picture is of one grey that differs from that of the picture before. Thread: any; `send` one
/// call at a time.
class MemoryTracking : public platform::WorldTracking {
  public:
    MemoryTracking();
    ~MemoryTracking() override;

    bool isSupported() const override { return true; }
    /// The one session.
    std::shared_ptr<platform::ArSession> makeSession() override;

    /// Tells the session's delegate of a new frame; false while the session does not run.
    bool send(double timestamp);

  private:
    class Session;
    const std::shared_ptr<Session> m_session;
    std::uint64_t m_sent = 0;
};

} // namespace kestrin::bench
