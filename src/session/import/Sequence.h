#pragma once

#include "session/import/Calibration.h"
#include "session/import/TextTable.h"
#include "session/recording/RecordedFrame.h"

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::session {

/// One picture of a sequence, with what is known of its moment.
struct Shot {
    Stamp stamp = 0;
    std::filesystem::path picture;
    platform::Matrix pose;      ///< camera to world, in Kestrin's axes
    std::vector<ImuSample> imu; ///< since the shot before; times count from the first shot
};

/// What a data set's folder holds, pictures aside.
struct Sequence {
    Calibration camera;
    double rate = 30;        ///< frames a second, about
    std::vector<Shot> shots; ///< at least one, times go up
    std::size_t leftOut = 0; ///< pictures without a pose
};

/// Which of a data set's pictures are asked for, counted from 0.
struct PictureRange {
    std::size_t from = 0, to = std::numeric_limits<std::size_t>::max(); ///< `to` itself is not
};

/// What a folder may not say of itself.
struct ImportOptions {
    PictureRange pictures;
    std::optional<double> rate;             ///< frames a second, where pictures have no times
    std::optional<std::string> calibration; ///< fx fy cx cy [k1 k2 p1 p2 [k3]], for TUM folders
};

} // namespace kestrin::session
