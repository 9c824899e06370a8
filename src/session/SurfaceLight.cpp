#include "session/SurfaceLight.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kestrin::session {

namespace {

constexpr int kRays = 20;
constexpr int kLampSide = 2;     ///< a lamp is looked at in so many points squared
constexpr float kReach = 0.9F;   ///< metres up to which a neighbour takes light away
constexpr float kClear = 0.004F; ///< metres above the surface, free of the surface itself

/// A cosine-weighted hemisphere about +Z.
std::array<Vector3, kRays> hemisphere() {
    std::array<Vector3, kRays> directions;
    const float golden = std::numbers::pi_v<float> * (3 - std::sqrt(5.0F));
    for (std::size_t i = 0; i < kRays; ++i) {
        const float square = (float(i) + 0.5F) / kRays, radius = std::sqrt(square), angle = golden * float(i);
        directions[i] = {radius * std::cos(angle), radius * std::sin(angle), std::sqrt(1 - square)};
    }
    return directions;
}

const std::array<Vector3, kRays> kHemisphere = hemisphere();

} // namespace

SurfaceLight::SurfaceLight(const RoomLight& light, const Occluders& occluders, const Quad& quad,
                           const Vector3& center, float radius)
    : m_quad(quad), m_ambient(light.ambient), m_around(occluders.near(center, center, radius + kReach)) {
    for (const Lamp& lamp : light.lamps) {
        const float width = std::max(radius, lamp.quad.radius());
        m_lamps.push_back({&lamp, occluders.near(center, lamp.quad.center, width)});
    }
}

std::optional<Vector3> SurfaceLight::at(float x, float y) const {
    const Vector3 point = m_quad.at(x, y) + kClear * m_quad.out;
    if (m_around.contain(point))
        return {};
    Vector3 light = openness(point) * m_ambient;
    for (const SeenLamp& seen : m_lamps)
        light = light + seen.reach(point, m_quad.out) * seen.lamp->color;
    return light;
}

float SurfaceLight::SeenLamp::reach(const Vector3& point, const Vector3& normal) const {
    const Quad& quad = lamp->quad;
    float sum = 0;
    for (int i = 0; i < kLampSide * kLampSide; ++i) {
        const float x = 2 * (float(i % kLampSide) + 0.5F) / kLampSide - 1;
        const float y = 2 * (float(i / kLampSide) + 0.5F) / kLampSide - 1;
        const Vector3 source = quad.at(x, y) + kClear * quad.out;
        const Vector3 way = source - point;
        const float facing = dot(way, normal), leaving = -dot(way, quad.out);
        if (facing <= 0 || leaving <= 0 || between.blocks(point, source))
            continue;
        const float square = dot(way, way);
        sum += facing * leaving / (square * square);
    }
    const float area = quad.width * quad.height / (kLampSide * kLampSide);
    return area * sum / std::numbers::pi_v<float>;
}

float SurfaceLight::openness(const Vector3& point) const {
    float sum = 0;
    for (const Vector3& d : kHemisphere) {
        const Vector3 direction = d.x * m_quad.right + d.y * m_quad.up + d.z * m_quad.out;
        sum += m_around.firstHit(point, point + kReach * direction);
    }
    return sum / kRays;
}

} // namespace kestrin::session
