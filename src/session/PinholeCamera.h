#pragma once

#include "platform/ArSession.h"

namespace kestrin::session {

/// How the sensor sits in the device. A phone's turns with it, so its picture must be turned to be shown
/// upright; a webcam's picture is upright whatever the shape of the window, and is only cropped.
enum class Mounting { turned, upright };

/// What does not change from frame to frame.
struct CameraModel {
    platform::Intrinsics intrinsics;
    int width = 0, height = 0; ///< of the captured picture, pixels
    Mounting mounting = Mounting::turned;
};

/// The rotation from the axes of the screen (right, up, towards the viewer) to those of a sensor that turns
/// with the device. Any code but 1, 2 and 4 gives the identity.
platform::Matrix screenTurn(int orientation);

/// A camera without distortion. Thread: any.
class PinholeCamera final : public platform::ArCamera {
  public:
    /// `sensorPose` is where the picture was taken from, camera to world; `orientation` the interface
    /// orientation of the frame, by which an upright camera rotates its transform beforehand.
    PinholeCamera(const CameraModel& model, const platform::Matrix& sensorPose, int orientation,
                  platform::TrackingReason reason);

    platform::Matrix transform() const override { return m_transform; }
    platform::TrackingReason trackingReason() const override { return m_reason; }
    platform::Intrinsics intrinsics() const override { return m_model.intrinsics; }
    platform::Size imageResolution() const override;
    /// Zero for a viewport without an area.
    platform::Matrix projection(int orientation, platform::Size viewport, double zNear,
                                double zFar) const override;
    /// A point that is not in front of the camera gives one outside every viewport.
    platform::Point projectPoint(const platform::Vector3& point, int orientation,
                                 platform::Size viewport) const override;
    /// Zero for a viewport without an area.
    platform::AffineTransform displayTransform(int orientation, platform::Size viewport) const override;

    const CameraModel& model() const { return m_model; }
    const platform::Matrix& sensorPose() const { return m_sensorPose; }

  private:
    platform::Matrix shownTurn(int orientation) const;
    platform::AffineTransform pixelToNdc(int orientation, platform::Size viewport) const;

    CameraModel m_model;
    platform::Matrix m_sensorPose;
    platform::Matrix m_transform;
    platform::TrackingReason m_reason;
};

} // namespace kestrin::session
