#pragma once

#include "session/recording/RecordedFrame.h"

#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin::session {

class Field;

/// Reads the lines of `session.jsonl` one after the other and checks each against those before. Throws
/// FieldError, after which it is of no more use. Not thread-safe.
class LineReader {
  public:
    /// The first line.
    RecordingInfo readHeader(std::string_view line);
    /// Each further one; none for the line that marks the end.
    std::optional<RecordedFrame> readFrame(std::string_view line);

    bool isFinished() const { return m_isFinished; }

  private:
    using AnchorRef = std::shared_ptr<const platform::ArAnchor>;
    void readEnd(const Field& field);
    AnchorChanges readChanges(const Field& field);
    AnchorRef take(const Field& identifier);
    void readImu(const Field& field, std::vector<ImuSample>& samples);

    std::map<std::string, AnchorRef> m_anchors; ///< that there are, by identifier
    double m_time = -1;                         ///< of the frame before
    double m_imuTime = -std::numeric_limits<double>::infinity();
    std::size_t m_frames = 0;
    bool m_isFinished = false;
};

} // namespace kestrin::session
