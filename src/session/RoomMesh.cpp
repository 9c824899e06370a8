#include "session/RoomMesh.h"

#include <algorithm>
#include <array>

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

/// The pixels of a file are one object, however often it is used.
bool shareTexture(const Material& a, const Material& b) {
    const auto* first = std::get_if<platform::Image>(&a.texture);
    const auto* second = std::get_if<platform::Image>(&b.texture);
    const bool areSame =
        first && second
            ? first->pixels().data() == second->pixels().data()
            : !first && !second && std::get<std::string>(a.texture) == std::get<std::string>(b.texture);
    return areSame && (a.tile > 0) == (b.tile > 0);
}

using Group = std::vector<const Surface*>;

/// Surfaces with one texture, those with the largest surfaces last: walls and floors lie behind the rest, and
/// what is hidden need not be painted.
std::vector<Group> groupByTexture(const std::vector<Surface>& all) {
    Group sorted;
    for (const Surface& surface : all)
        sorted.push_back(&surface);
    const auto area = [](const Surface* surface) { return surface->quad.width * surface->quad.height; };
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](const Surface* a, const Surface* b) { return area(a) > area(b); });
    std::vector<Group> groups;
    for (const Surface* surface : sorted) {
        const auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& g) {
            return shareTexture(g.front()->material, surface->material);
        });
        if (group == groups.end())
            groups.push_back({surface});
        else
            group->push_back(surface);
    }
    std::reverse(groups.begin(), groups.end());
    return groups;
}

} // namespace

RoomMesh::RoomMesh(const Room& room) : light(room) {
    const std::vector<Surface> all = room.allSurfaces();
    for (const Group& group : groupByTexture(all)) {
        const Material& material = group.front()->material;
        surfaces.push_back({material.texture, material.tile > 0, int(vertices.size()), 0});
        for (const Surface* surface : group)
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
