#pragma once

#include "session/SessionLoop.h"

namespace kestrin::session {

/// A session whose frames come from a source, on a thread of its own that starts with the first run. The
/// delegate is held weakly. Its end waits for the call under way, unless it ends inside that call. Thread:
/// any.
class SourcedSession final : public platform::ArSession {
  public:
    SourcedSession(std::unique_ptr<FrameSource> source, SessionOptions options);
    ~SourcedSession() override;
    SourcedSession(const SourcedSession&) = delete;
    SourcedSession& operator=(const SourcedSession&) = delete;

    void setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) override;
    void run(const platform::ArConfiguration& configuration, unsigned options) override;
    void pause() override;
    std::shared_ptr<const platform::ArFrame> currentFrame() const override;
    std::optional<platform::ArConfiguration> configuration() const override;
    void removeAnchor(const std::string& identifier) override;

    /// With stepped pacing: makes one frame and returns true when the delegate has been told all of it. False
    /// when none came in time (the session is paused, or all buffers are held), at the end, and on the
    /// session thread.
    bool step(double timeoutSeconds = 30);
    /// How many frames the delegate was told of, or would have been.
    std::uint64_t frames() const;
    /// Whether the source has given its last frame to the present run.
    bool hasEnded() const;

  private:
    const std::shared_ptr<SessionLoop> m_loop;
    std::once_flag m_started;
    std::thread m_thread;
};

} // namespace kestrin::session
