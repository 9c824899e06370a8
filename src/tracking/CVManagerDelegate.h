#pragma once

#include "platform/Matrix.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kestrin {

/// Told what tracking finds. Poses, views and projections are column-major; poses are in world metres, widths
/// and heights are metres. Thread: the one on which tracking reports (session, or main for what main
/// started), always main when the manager was told to.
class CVManagerDelegate {
  public:
    /// The vertices and indices of a plane, with the geometry that they belong to kept alive.
    using Vertices = std::shared_ptr<const platform::Vector3[]>;
    using Indices = std::shared_ptr<const std::int16_t[]>;

    virtual ~CVManagerDelegate() = default;

    virtual void onMarkerFound(const std::string& name) = 0;
    virtual void onMarkerLost(const std::string& name) = 0;
    /// Once a frame. `name` is empty while nothing is tracked; `timestamp` is the frame's, seconds.
    virtual void onMarkerTracked(const std::string& name, const platform::Matrix& mvp,
                                 const platform::Matrix& view, double timestamp) = 0;
    virtual void onUpdateProjectionMatrix(const platform::Matrix& projection) = 0;
    /// Pixels.
    virtual void onUpdateViewport(const platform::Size& viewport) = 0;

    virtual void onTriggerStarted() = 0;
    virtual void onTriggerAdded(const std::string& name, const platform::Matrix& pose, float width,
                                float height) = 0;
    virtual void onTriggerUpdated(const std::string& name, const platform::Matrix& pose, float width,
                                  float height) = 0;
    virtual void onTriggerRemoved(const std::string& name) = 0;
    virtual void onTriggerClear() = 0;

    virtual void onPlaneStarted() = 0;
    virtual void onPlaneAdded(const std::string& identifier, const platform::Matrix& pose, float width,
                              float height) = 0;
    virtual void onPlaneUpdated(const std::string& identifier, const platform::Matrix& pose, float width,
                                float height) = 0;
    /// Vertices in the plane's frame, three indices a triangle.
    virtual void onPlaneGeometryUpdated(const std::string& identifier, const Vertices& vertices,
                                        int verticesCount, const Indices& indices, int indicesCount) = 0;
    virtual void onPlaneRemoved(const std::string& identifier) = 0;
    virtual void onPlaneClear() = 0;

    /// In [0, 1].
    virtual void onLightEstimate(float estimate) = 0;
    /// 0 normal, 1 initialising or triggers loaded, 2 relocalising, 3 excessive motion, 4 insufficient
    /// features, 5 loading image triggers.
    virtual void onTrackingReasonChange(int reason) = 0;
};

} // namespace kestrin
