#include "session/import/Calibration.h"

#include "session/recording/RecordingLimits.h"

#include <cmath>

namespace kestrin::session {

namespace {

bool isFocal(double value) { return value >= 1 && value <= 1e6; }
bool isPrincipal(double value) { return std::abs(value) <= 2 * kMostSide; }

} // namespace

bool Calibration::isSound() const { return isFocal(fx) && isFocal(fy) && isPrincipal(cx) && isPrincipal(cy); }

CameraModel Calibration::pinhole() const {
    return {{fx, fy, cx + 0.5, cy + 0.5}, width, height, Mounting::upright};
}

} // namespace kestrin::session
