#include "session/RoomMesh.h"

#include <algorithm>
#include <array>
#include <map>

namespace kestrin::session {

namespace {

/// The corners of two triangles, as x and y in [-1, 1].
constexpr std::array<std::array<float, 2>, 6> kCorners{
    {{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}}};

RoomMesh::Vertex vertexAt(const Quad& quad, float x, float y, const LightMap::Patch& patch) {
    const Vector3 point = quad.at(x, y);
    return {point.x,
            point.y,
            point.z,
            (x + 1) / 2,
            (1 - y) / 2,
            x < 0 ? patch.left : patch.right,
            y < 0 ? patch.bottom : patch.top};
}

/// Textures that repeat lie on a grid through the world's origin, so that they run on over neighbouring
/// surfaces.
void layTiles(RoomMesh::Vertex& vertex, const Quad& quad, float tile) {
    const Vector3 point{vertex.x, vertex.y, vertex.z};
    vertex.u = dot(point, quad.right) / tile;
    vertex.v = -dot(point, quad.up) / tile;
}

/// Which surfaces share a texture. The pixels of a file are one object, however often it is used.
std::string keyOf(const Texture& texture) {
    if (const auto* name = std::get_if<std::string>(&texture))
        return *name;
    return std::to_string(
        reinterpret_cast<std::uintptr_t>(std::get<platform::Image>(texture).pixels().data()));
}

} // namespace

RoomMesh::RoomMesh(const Room& room) : light(room) {
    const std::vector<Surface> all = room.allSurfaces();
    std::map<std::pair<std::string, bool>, std::vector<const Surface*>> groups;
    std::vector<std::pair<std::string, bool>> order;
    for (const Surface& surface : all) {
        const std::pair key{keyOf(surface.material.texture), surface.material.tile > 0};
        if (groups[key].empty())
            order.push_back(key);
        groups[key].push_back(&surface);
    }
    for (const auto& key : order) {
        surfaces.push_back({groups[key].front()->material.texture, key.second, int(vertices.size()), 0});
        for (const Surface* surface : groups[key])
            addSurface(*surface);
        surfaces.back().count = int(vertices.size()) - surfaces.back().first;
    }
    for (const Picture& picture : room.pictures)
        addPicture(picture);
    for (const Mark& mark : room.marks)
        addMark(mark);
}

void RoomMesh::addSurface(const Surface& surface) {
    const Material& material = surface.material;
    const auto patch =
        material.glows ? light.addGlowing(material.tint) : light.add(surface.quad, material.tint);
    for (const auto& [x, y] : kCorners) {
        vertices.push_back(vertexAt(surface.quad, x, y, patch));
        if (material.tile > 0)
            layTiles(vertices.back(), surface.quad, material.tile);
    }
}

void RoomMesh::addPicture(const Picture& picture) {
    pictures.push_back({picture.texture, false, int(vertices.size()), int(kCorners.size())});
    const auto patch = light.add(picture.quad, {1, 1, 1});
    for (const auto& [x, y] : kCorners)
        vertices.push_back(vertexAt(picture.quad, x, y, patch));
}

void RoomMesh::addMark(const Mark& mark) {
    const float half = mark.quad.width / 2;
    for (const auto& [x, y] : kCorners) {
        const Vector3 point = mark.quad.at(x, y);
        marks.push_back({point.x, point.y, point.z, x * half, y * half, mark.radius});
    }
}

} // namespace kestrin::session
