#pragma once

#include "session/recording/RecordedFrame.h"

#include <cstddef>
#include <string>

namespace kestrin::session {

// The lines of `session.jsonl` (docs/recordings.md), without the end of line. Numbers have as many digits as
// it takes to read the same number back.
std::string headerLine(const RecordingInfo& info);
std::string frameLine(const RecordedFrame& frame);
std::string endLine(std::size_t frames);

} // namespace kestrin::session
