#include "session/PlaneFinder.h"

#include "session/Uuid.h"

#include <cmath>
#include <utility>

namespace kestrin::session {

using platform::ArConfiguration;
using platform::ArPlaneAnchor;
using platform::ArPlaneGeometry;

namespace {

// Enough of a plane is seen with a fair share of it, or with a fair piece.
constexpr float kEnoughShare = 0.25F;
constexpr float kEnoughArea = 0.4F; // square metres

unsigned kindOf(const Quad& quad) {
    const float slope = std::abs(quad.out.y);
    if (slope > 0.95F)
        return ArConfiguration::kHorizontal;
    return slope < 0.05F ? unsigned(ArConfiguration::kVertical) : 0;
}

/// A fan over the corners of the rectangle.
std::shared_ptr<const ArPlaneGeometry> geometryOf(const Quad& quad) {
    const float x = quad.width / 2, z = quad.height / 2;
    auto geometry = std::make_shared<ArPlaneGeometry>();
    geometry->vertices = {{-x, 0, z}, {x, 0, z}, {x, 0, -z}, {-x, 0, -z}};
    geometry->triangleIndices = {0, 1, 2, 0, 2, 3};
    return geometry;
}

std::shared_ptr<const ArPlaneAnchor> anchorOf(const Surface& surface, std::string identifier) {
    auto anchor = std::make_shared<ArPlaneAnchor>();
    anchor->identifier = std::move(identifier);
    anchor->transform = surface.quad.anchorPose();
    anchor->extent = {surface.quad.width, 0, surface.quad.height};
    anchor->isVertical = kindOf(surface.quad) == ArConfiguration::kVertical;
    anchor->geometry = geometryOf(surface.quad);
    return anchor;
}

} // namespace

PlaneFinder::PlaneFinder(const Room& room) {
    for (const Surface& surface : room.allSurfaces())
        if (surface.isPlane)
            m_planes.push_back({surface, kindOf(surface.quad)});
}

void PlaneFinder::look(const Sight& sight, AnchorChanges& changes) {
    for (std::size_t i = 0; i < m_planes.size(); ++i) {
        Plane& plane = m_planes[i];
        if (plane.anchor || (plane.kind & m_kinds) == 0)
            continue;
        const Quad& quad = plane.surface.quad;
        const float share = sight.shareOf(quad);
        if (share < kEnoughShare && share * quad.width * quad.height < kEnoughArea)
            continue;
        const std::string seed = "plane " + std::to_string(i) + " " + plane.surface.name;
        plane.anchor = anchorOf(plane.surface, makeUuid(seed, plane.timesFound++));
        changes.added.push_back(plane.anchor);
    }
}

void PlaneFinder::forget(const std::string& identifier, AnchorChanges& changes) {
    for (Plane& plane : m_planes)
        if (plane.anchor && plane.anchor->identifier == identifier)
            changes.removed.push_back(std::exchange(plane.anchor, nullptr));
}

void PlaneFinder::forgetAll(AnchorChanges& changes) {
    for (Plane& plane : m_planes)
        if (plane.anchor)
            changes.removed.push_back(std::exchange(plane.anchor, nullptr));
}

} // namespace kestrin::session
