#pragma once

#include "session/recording/RecordedFrame.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <variant>

namespace kestrin::session {

/// Writes a recording frame by frame. What has been added is on the disk and can be played even when the
/// program dies before finish(). Thread: any one at a time.
class RecordingWriter {
  public:
    /// Makes the folder `NAME.krs`, which must not exist yet.
    static std::variant<std::unique_ptr<RecordingWriter>, RecordingError>
    create(const std::filesystem::path& folder, const RecordingInfo& info);
    ~RecordingWriter(); ///< without finish() before, the recording stays an interrupted one
    RecordingWriter(const RecordingWriter&) = delete;
    RecordingWriter& operator=(const RecordingWriter&) = delete;

    /// Adds one frame; times must go up. After an error nothing more is written.
    std::optional<RecordingError> add(const RecordedFrame& frame, const Nv12Buffer& picture);
    /// Marks the recording as whole.
    std::optional<RecordingError> finish();

  private:
    struct State;
    explicit RecordingWriter(std::unique_ptr<State> state);
    const std::unique_ptr<State> m_state;
};

} // namespace kestrin::session
