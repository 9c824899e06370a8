#pragma once

#include "session/recording/RecordedFrame.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <variant>

namespace kestrin::session {

/// What to do with a damaged recording.
enum class Damage {
    refused,  ///< it is an error when opening, whatever part is damaged
    tolerated ///< everything before the damage is read, as if the recording ended there
};

/// Reads a recording. The frames' lines are checked and held when it is opened; pictures are decoded ahead on
/// a thread of its own. Thread: any one at a time.
class RecordingReader {
  public:
    static std::variant<std::unique_ptr<RecordingReader>, RecordingError>
    open(const std::filesystem::path& folder, Damage damage = Damage::refused);
    ~RecordingReader();
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;

    const RecordingInfo& info() const;
    std::size_t size() const; ///< frames that can be read
    const RecordedFrame& frame(std::size_t index) const;
    /// False when the writer did not come to finish it; the frames before that are whole.
    bool isFinished() const;
    /// The damage that was tolerated.
    const std::optional<RecordingError>& damage() const;

    /// Decodes the picture of a frame into a buffer of the recording's size; false when it cannot be had.
    /// The buffer may have other memory afterwards.
    /// Those that follow are decoded meanwhile; going elsewhere waits for the decoding.
    bool picture(std::size_t index, Nv12Buffer& picture);

  private:
    struct State;
    explicit RecordingReader(std::unique_ptr<State> state);
    const std::unique_ptr<State> m_state;
};

} // namespace kestrin::session
