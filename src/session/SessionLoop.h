#pragma once

#include "platform/Orientation.h"
#include "session/AnchorLedger.h"
#include "session/BufferPool.h"
#include "session/FrameSource.h"
#include "session/SessionTap.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrin::session {

enum class Pacing {
    realTime, ///< each frame at its time; frames that are late, or find every buffer held, are dropped
    asTaken,  ///< as fast as buffers come back, none dropped
    stepped   ///< one for each step()
};

struct SessionOptions {
    Pacing pacing = Pacing::realTime;
    int buffers = 6; ///< in the pool; the current frame holds one
    /// Must outlive the session; landscape right when there is none.
    const platform::InterfaceOrientation* orientation = nullptr;
    std::function<void(std::string_view)> log; ///< may be empty; called on any thread
    std::shared_ptr<SessionTap> tap = {};      ///< may be empty
    double speed = 1;                          ///< times real time; what is not positive is 1
};

/// The part of a session that its thread shares: commands go in on any thread, frames come out on the session
/// thread. It lives until both the session and the thread have let it go.
class SessionLoop : public std::enable_shared_from_this<SessionLoop> {
  public:
    SessionLoop(std::unique_ptr<FrameSource> source, SessionOptions options);

    // Thread: any; none waits for the session thread, except step.
    void setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate);
    void run(const platform::ArConfiguration& configuration, unsigned options);
    void pause();
    void stop();
    void forget(const std::string& identifier);
    std::shared_ptr<const platform::ArFrame> currentFrame() const;
    std::optional<platform::ArConfiguration> configuration() const;
    bool step(double timeout);
    std::uint64_t frames() const;
    bool hasEnded() const;

    /// The body of the thread: until stop.
    void work();

  private:
    using Clock = std::chrono::steady_clock;
    using Generation = std::uint64_t;
    using Lock = std::unique_lock<std::mutex>;

    struct Job {
        std::shared_ptr<Nv12Buffer> picture; ///< empty when the session stops
        Generation generation = 0;
    };
    Job waitForJob();
    void beginRun(Lock& lock);
    bool waitUntilDue(Lock& lock);
    bool produce(const Job& job);
    std::shared_ptr<const platform::ArFrame> makeFrame(const SourcedFrame& sourced, const Job& job,
                                                       int orientation) const;
    bool publish(std::shared_ptr<const platform::ArFrame> frame, Generation generation);
    void tellTap(const SourcedFrame& sourced, const Job& job) const;
    void tellDelegate(const std::shared_ptr<const platform::ArFrame>& frame, Generation generation);
    std::shared_ptr<platform::ArSessionDelegate> delegateOf(Generation generation) const;
    std::shared_ptr<const platform::ArFrame> frameForRun(unsigned options) const;
    void wake();
    bool isSessionThread() const;
    int orientation() const;

    const SessionOptions m_options;
    const CameraModel m_model;
    const double m_rate, m_speed;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake; ///< a command came, or a buffer came back
    std::condition_variable m_stepped;
    std::mutex m_oneStep; ///< held by the caller of step
    // Guarded by m_mutex, under which no frame may be released: its buffer's return takes the mutex.
    bool m_isRunning = false, m_isStopping = false, m_hasEnded = false, m_stepAsked = false;
    bool m_beginAsked = false;
    unsigned m_beginOptions = 0;
    std::uint64_t m_steps = 0;
    Generation m_generation = 0; ///< goes up with each run and pause
    std::optional<platform::ArConfiguration> m_configuration;
    std::vector<std::string> m_forgotten;
    std::weak_ptr<platform::ArSessionDelegate> m_delegate;
    std::shared_ptr<const platform::ArFrame> m_frame;
    std::uint64_t m_frames = 0;
    std::thread::id m_thread;

    // Thread: session.
    std::unique_ptr<FrameSource> m_source;
    std::optional<BufferPool> m_pool;
    AnchorLedger m_anchors;
    bool m_estimatesLight = false;
    bool m_isFed = false;      ///< the source has begun a run and does not rest
    Clock::time_point m_start; ///< when the source's time 0 was, or would have been
};

} // namespace kestrin::session
