#pragma once

#include "session/Occluders.h"
#include "session/Room.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrin::session {

/// The light that falls on the surfaces of a room, worked out once: a coarse patch for each surface, all in
/// one picture. A texel holds half the factor by which the surface's texture is multiplied.
class LightMap {
  public:
    /// The room must outlive it.
    explicit LightMap(const Room& room);

    /// Where a surface's edges are, in texels: the middles of its outer ones, so that no neighbour shines in.
    struct Patch {
        float left = 0, bottom = 0, right = 0, top = 0;
    };
    /// Keeps a place for the light on a surface.
    Patch add(const Quad& quad, const Vector3& tint);
    /// For one that shines with its own colour.
    Patch addGlowing(const Vector3& color);
    /// Works out the light on all that was added, which takes a while.
    void bake();

    static constexpr int kWidth = 256;
    /// Rows of RGBA, kWidth wide.
    int height() const { return int(m_texels.size() / kWidth / 4); }
    const std::vector<std::uint8_t>& texels() const { return m_texels; }

  private:
    struct Place {
        int x, y, columns, rows;
    };
    struct Job {
        Quad quad;
        Vector3 tint;
        Place place;
    };
    using Lights = std::vector<std::optional<Vector3>>; ///< none where the surface is covered
    void bake(const Job& job);
    Lights lightsOn(const Quad& quad, int columns, int rows) const;
    static Vector3 lightBeside(const Lights& lights, int columns, int index);
    Place reserve(int columns, int rows);
    void set(int x, int y, const Vector3& color);
    static Patch patchOf(const Place& place);

    const RoomLight& m_light;
    const Occluders m_occluders;
    const float m_scale;
    std::vector<Job> m_jobs;
    std::vector<std::uint8_t> m_texels;
    int m_x = 0, m_y = 0, m_rowHeight = 0;
};

} // namespace kestrin::session
