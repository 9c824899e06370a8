#pragma once

#include "session/recording/RecordedFrame.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::session {

/// All that `session.jsonl` says, up to its first fault.
struct RecordingIndex {
    struct Fault {
        std::size_t line; ///< from 1
        std::string text;
    };
    std::optional<RecordingInfo> info; ///< none when the fault is in the first line
    std::vector<RecordedFrame> frames;
    bool isFinished = false;
    std::optional<Fault> fault;
};

/// A last line that was cut while it was written does not count.
RecordingIndex readIndex(std::string_view text);

} // namespace kestrin::session
