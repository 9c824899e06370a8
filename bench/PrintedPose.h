#pragma once

#include "platform/Matrix.h"

#include <string>

namespace kestrin::bench {

/// The baseline of pose_text: the call with the matrix and the seconds printed as JSON, in as many digits as
/// a float needs to come back the same.
std::string printedPose(const platform::Matrix& pose, float seconds);

} // namespace kestrin::bench
