#pragma once

#include "session/SourcedSession.h"

namespace kestrin::session {

/// World tracking whose sessions take their frames from a source. Thread: any.
class SourcedTracking : public platform::WorldTracking {
  public:
    bool isSupported() const override { return true; }
    std::shared_ptr<platform::ArSession> makeSession() override;
    /// Steps the session that was made last; see SourcedSession::step.
    bool step(double timeoutSeconds = 30) const;
    /// Frames of the session that was made last.
    std::uint64_t frames() const;
    /// Whether the session that was made last runs and has given its last frame.
    bool hasEnded() const;

  protected:
    explicit SourcedTracking(SessionOptions options);
    virtual std::unique_ptr<FrameSource> makeSource() const = 0;

  private:
    std::shared_ptr<SourcedSession> newest() const;

    const SessionOptions m_options;
    mutable std::mutex m_mutex;
    std::weak_ptr<SourcedSession> m_newest;
};

} // namespace kestrin::session
