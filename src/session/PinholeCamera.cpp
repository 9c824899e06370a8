#include "session/PinholeCamera.h"

#include "session/Geometry.h"

#include <algorithm>
#include <cmath>

namespace kestrin::session {

using platform::AffineTransform;
using platform::Intrinsics;
using platform::Point;
using platform::Size;
using platform::Vector4;

namespace {

constexpr Point kNowhere{-1e6, -1e6};

bool hasArea(Size size) {
    return std::isfinite(size.width) && std::isfinite(size.height) && size.width > 0 && size.height > 0;
}

Matrix transformOf(const CameraModel& model, const Matrix& sensorPose, int orientation) {
    return model.mounting == Mounting::turned ? sensorPose
                                              : sensorPose * rigidInverse(screenTurn(orientation));
}

} // namespace

Matrix screenTurn(int orientation) {
    Matrix turn = Matrix::identity();
    switch (orientation) {
    case 1:
        turn[0] = {0, 1, 0, 0};
        turn[1] = {-1, 0, 0, 0};
        break;
    case 2:
        turn[0] = {0, -1, 0, 0};
        turn[1] = {1, 0, 0, 0};
        break;
    case 4:
        turn[0] = {-1, 0, 0, 0};
        turn[1] = {0, -1, 0, 0};
        break;
    default:
        break;
    }
    return turn;
}

PinholeCamera::PinholeCamera(const CameraModel& model, const Matrix& sensorPose, int orientation,
                             platform::TrackingReason reason)
    : m_model(model), m_sensorPose(sensorPose), m_transform(transformOf(model, sensorPose, orientation)),
      m_reason(reason) {}

Size PinholeCamera::imageResolution() const { return {double(m_model.width), double(m_model.height)}; }

Matrix PinholeCamera::shownTurn(int orientation) const {
    return m_model.mounting == Mounting::turned ? screenTurn(orientation) : Matrix::identity();
}

/// From pixels of the picture to normalised device coordinates. Everything that is said of an orientation and
/// a viewport follows from this one map.
AffineTransform PinholeCamera::pixelToNdc(int orientation, Size viewport) const {
    const Matrix turn = shownTurn(orientation);
    const Vector4 &right = turn[0], &up = turn[1];
    const double width = m_model.width, height = m_model.height;
    const Size shown = right.x != 0 ? Size{width, height} : Size{height, width};
    const double fill = std::max(viewport.width / shown.width, viewport.height / shown.height);
    const double kx = 2 * fill / viewport.width, ky = 2 * fill / viewport.height;
    // A picture's y points down, the sensor's and the screen's up.
    AffineTransform map{kx * right.x, ky * up.x, -kx * right.y, -ky * up.y, 0, 0};
    const Point center = map * Point{width / 2, height / 2};
    map.tx = -center.x;
    map.ty = -center.y;
    return map;
}

Matrix PinholeCamera::projection(int orientation, Size viewport, double zNear, double zFar) const {
    if (!hasArea(viewport))
        return {};
    const AffineTransform ndc = pixelToNdc(orientation, viewport);
    const Intrinsics& k = m_model.intrinsics;
    // With w = -z a point (x, y, z) is seen at pixel (fx x - cx z, -fy y - cy z) / w.
    const Point principal = ndc * Point{k.cx, k.cy};
    const double depth = (zFar + zNear) / (zNear - zFar);
    const Matrix sensor{{{{float(ndc.a * k.fx), float(ndc.b * k.fx), 0, 0},
                          {float(-ndc.c * k.fy), float(-ndc.d * k.fy), 0, 0},
                          {float(-principal.x), float(-principal.y), float(depth), -1},
                          {0, 0, float(2 * zFar * zNear / (zNear - zFar)), 0}}}};
    return sensor * shownTurn(orientation);
}

Point PinholeCamera::projectPoint(const Vector3& point, int orientation, Size viewport) const {
    const Vector3 seen = transformPoint(rigidInverse(m_sensorPose), point);
    if (!(seen.z < 0) || !hasArea(viewport))
        return kNowhere;
    const Intrinsics& k = m_model.intrinsics;
    const Point pixel{k.cx - k.fx * seen.x / seen.z, k.cy + k.fy * seen.y / seen.z};
    const Point ndc = pixelToNdc(orientation, viewport) * pixel;
    return {(ndc.x + 1) / 2 * viewport.width, (1 - ndc.y) / 2 * viewport.height};
}

AffineTransform PinholeCamera::displayTransform(int orientation, Size viewport) const {
    if (!hasArea(viewport))
        return {};
    const AffineTransform ndc = pixelToNdc(orientation, viewport);
    const double width = m_model.width, height = m_model.height;
    return {ndc.a * width / 2,   -ndc.b * width / 2, ndc.c * height / 2,
            -ndc.d * height / 2, (ndc.tx + 1) / 2,   (1 - ndc.ty) / 2};
}

} // namespace kestrin::session
