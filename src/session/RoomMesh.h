#pragma once

#include "session/LightMap.h"
#include "session/Room.h"

#include <vector>

namespace kestrin::session {

/// The triangles of a room with their light. Front faces run counter-clockwise.
struct RoomMesh {
    struct Vertex {
        float x, y, z;
        float u, v;           ///< of the texture, v down
        float lightX, lightY; ///< texels of the light map
    };
    struct MarkVertex {
        float x, y, z;
        float right, up; ///< metres from the centre of the mark
        float radius;    ///< metres
    };
    /// Triangles with one texture.
    struct Batch {
        Texture texture;
        bool repeats = false;
        int first = 0, count = 0; ///< vertices
    };

    /// The room must outlive it.
    explicit RoomMesh(const Room& room);

    std::vector<Vertex> vertices;
    std::vector<Batch> surfaces;
    std::vector<Batch> pictures;   ///< to be drawn on the surfaces
    std::vector<MarkVertex> marks; ///< to be drawn on both
    LightMap light;                ///< to be baked

  private:
    void addSurface(const Surface& surface);
    void addPicture(const Picture& picture);
    void addMark(const Mark& mark);
};

} // namespace kestrin::session
