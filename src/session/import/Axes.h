#pragma once

#include "platform/Matrix.h"

#include <Eigen/Geometry>

namespace kestrin::session {

/// Which axis of a data set's world points up. Kestrin's points +y:
/// (x, y, z) becomes (x, z, -y) where z points up, and (x, -z, y) where -z does.
enum class WorldUp { y, z, minusZ };

/// The axes of a data set's camera: x to the right, y down and z forward as usual there, or Kestrin's x to
/// the right, y up and z backward.
enum class CameraAxes { downForward, upBackward };

/// From the data set's world to Kestrin's.
Eigen::Matrix3d worldTurn(WorldUp up);
/// From Kestrin's camera to the data set's; its own inverse.
Eigen::Matrix3d cameraTurn(CameraAxes axes);

/// Camera to world in Kestrin's axes, from that in the data set's.
platform::Matrix kestrinPose(const Eigen::Isometry3d& worldFromCamera, WorldUp up, CameraAxes axes);

} // namespace kestrin::session
