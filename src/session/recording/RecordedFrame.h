#pragma once

#include "session/FrameSource.h"

#include <string>
#include <vector>

namespace kestrin::session {

/// One reading of an inertial sensor, in the camera's axes.
struct ImuSample {
    double time = 0;             ///< seconds, on the clock of the frames
    double rotation[3] = {};     ///< angular rate, rad/s
    double acceleration[3] = {}; ///< specific force, m/s^2
};

/// One frame of a recording, without its picture.
struct RecordedFrame {
    SourcedFrame frame;
    std::vector<ImuSample> imu; ///< since the frame before
};

/// What holds for a whole recording.
struct RecordingInfo {
    CameraModel camera; ///< intrinsics: those of the first frame
    double rate = 30;   ///< frames a second, about
    std::string origin; ///< what it was made from, for people; may be empty
};

/// Why a recording cannot be written or read: one line that names the file, and the line where there is one.
struct RecordingError {
    std::string text;
};

} // namespace kestrin::session
