#include "session/Sight.h"

namespace kestrin::session {

namespace {
constexpr int kSide = 8; // so many points squared are looked at
}

Sight::Sight(const CameraModel& model, const Matrix& sensorPose, const Occluders& occluders)
    : m_model(model), m_worldToSensor(rigidInverse(sensorPose)), m_eye(position(sensorPose)),
      m_occluders(occluders) {}

float Sight::shareOf(const Quad& quad) const {
    if (dot(m_eye - quad.center, quad.out) <= 0)
        return 0;
    int seen = 0;
    for (int i = 0; i < kSide * kSide; ++i) {
        const float x = 2 * (float(i % kSide) + 0.5F) / kSide - 1,
                    y = 2 * (float(i / kSide) + 0.5F) / kSide - 1;
        seen += sees(quad.at(x, y)) ? 1 : 0;
    }
    return float(seen) / (kSide * kSide);
}

bool Sight::sees(const Vector3& point) const {
    const Vector3 place = transformPoint(m_worldToSensor, point);
    if (!(place.z < 0))
        return false;
    const platform::Intrinsics& k = m_model.intrinsics;
    const double x = k.cx - k.fx * place.x / place.z, y = k.cy + k.fy * place.y / place.z;
    return x > 0 && x < m_model.width && y > 0 && y < m_model.height && !m_occluders.blocks(m_eye, point);
}

} // namespace kestrin::session
