#pragma once

#include "session/Room.h"

namespace kestrin::session {

/// What stands in the way of light and sight: the boxes and surfaces of a room. Immutable. Thread: any.
class Occluders {
  public:
    explicit Occluders(const Room& room);

    /// Where on the way from one point to another something is first met: 0 at the start, 1 when the way is
    /// free.
    float firstHit(const Vector3& from, const Vector3& to) const;
    /// Quicker than firstHit. The last two centimetres do not count: a point on a surface is seen, under
    /// a sheet too.
    bool blocks(const Vector3& from, const Vector3& to) const;
    /// Those that come within `radius` of the way from `a` to `b`.
    Occluders near(const Vector3& a, const Vector3& b, float radius) const;
    /// Whether a point is inside a box.
    bool contain(const Vector3& point) const;

  private:
    Occluders() = default;
    struct Block {
        Vector3 center, half;
        float cosine, sine;
        Vector3 inFrame(const Vector3& vector) const;
        float hit(const Vector3& from, const Vector3& way) const;
        bool contains(const Vector3& point) const;
    };
    struct Sheet {
        Quad quad;
        float hit(const Vector3& from, const Vector3& way) const;
    };
    std::vector<Block> m_blocks;
    std::vector<Sheet> m_sheets;
};

} // namespace kestrin::session
