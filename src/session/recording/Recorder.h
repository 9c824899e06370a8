#pragma once

#include "session/SessionTap.h"
#include "session/recording/RecordedFrame.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string_view>
#include <thread>
#include <variant>

namespace kestrin::session {

struct RecorderOptions {
    std::filesystem::path folder;              ///< NAME.krs, which must not exist yet
    std::string origin;                        ///< for people; may be empty
    std::function<void(std::string_view)> log; ///< may be empty; called on any thread
};

/// Records what sessions deliver, on a thread of its own that no session waits for: when it falls behind, the
/// recording misses a frame. Sessions one after the other give one recording whose times go on rising. What
/// goes wrong on the way is one log line, and the recording ends there. Thread: any.
class Recorder final : public SessionTap {
  public:
    static std::variant<std::shared_ptr<Recorder>, RecordingError> create(const RecorderOptions& options);
    ~Recorder() override; ///< finishes
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    void deliver(TappedFrame frame) override;
    int pictures() const override;

    /// Waits for the frames under way, marks the recording as whole and logs what it holds. What is delivered
    /// later is not recorded.
    void finish();
    std::uint64_t recorded() const;
    std::uint64_t missed() const; ///< because it had fallen behind

  private:
    class Work;
    explicit Recorder(std::shared_ptr<Work> work);

    const std::shared_ptr<Work> m_work; ///< shared with the thread
    std::thread m_thread;
    std::once_flag m_finished;
};

} // namespace kestrin::session
