#pragma once

#include "session/Occluders.h"
#include "session/PinholeCamera.h"

namespace kestrin::session {

/// What can be seen of a room from one place. The occluders must outlive it.
class Sight {
  public:
    Sight(const CameraModel& model, const Matrix& sensorPose, const Occluders& occluders);
    /// The share of a rectangle's front that is in the picture with nothing before it, 0 to 1.
    float shareOf(const Quad& quad) const;

  private:
    bool sees(const Vector3& point) const;

    const CameraModel& m_model;
    const Matrix m_worldToSensor;
    const Vector3 m_eye;
    const Occluders& m_occluders;
};

} // namespace kestrin::session
