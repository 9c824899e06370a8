#pragma once

#include "session/Geometry.h"

#include <vector>

namespace kestrin::session {

struct CameraKey {
    double time = 0; ///< seconds
    Vector3 position;
    Quaternion rotation; ///< camera to world
};

/// A hand is never still: slow wavering with these amplitudes.
struct Sway {
    float distance = 0; ///< metres
    float angle = 0;    ///< radians
};

/// A closed path through keys, smooth in position and rotation. Thread: any.
class CameraPath {
  public:
    CameraPath() = default;
    /// At least one key, times rising from 0 on; the last returns to the first at `period`. `start` is where
    /// on the path the first frame is.
    CameraPath(std::vector<CameraKey> keys, double period, double start, Sway sway);
    /// Camera to world.
    Matrix poseAt(double seconds) const;

  private:
    const CameraKey& key(std::ptrdiff_t index) const;
    double keyTime(std::ptrdiff_t index) const;

    std::vector<CameraKey> m_keys{1};
    double m_period = 1, m_start = 0;
    Sway m_sway;
};

} // namespace kestrin::session
