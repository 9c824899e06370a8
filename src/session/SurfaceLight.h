#pragma once

#include "session/Occluders.h"
#include "session/Room.h"

#include <optional>
#include <vector>

namespace kestrin::session {

/// The light that falls on a part of a surface. What is too far away to matter there is left out from the
/// start.
class SurfaceLight {
  public:
    /// The part lies within `radius` of `center`. The light must outlive it.
    SurfaceLight(const RoomLight& light, const Occluders& occluders, const Quad& quad, const Vector3& center,
                 float radius);
    /// With x and y in [-1, 1] on the whole surface; none where it is covered.
    std::optional<Vector3> at(float x, float y) const;

  private:
    struct SeenLamp {
        const Lamp* lamp;
        Occluders between;
        float reach(const Vector3& point, const Vector3& normal) const;
    };
    float openness(const Vector3& point) const;

    const Quad m_quad;
    const Vector3 m_ambient;
    const Occluders m_around;
    std::vector<SeenLamp> m_lamps;
};

} // namespace kestrin::session
