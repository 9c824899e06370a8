#include "core/config/KestrinFeatureFlags.h"
#include "services/util/Format.h"
#include "services/util/SystemLevel.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "tracking/Geometry.h"

#include <cmath>

namespace kestrin {

using namespace platform;

namespace {

/// Calls `see` with each anchor of that kind.
template <class Anchor, class See>
void forEach(const ArAnchors& anchors, const See& see) {
    for (const auto& anchor : anchors)
        if (const auto* wanted = dynamic_cast<const Anchor*>(anchor.get()))
            see(*wanted);
}

const std::string& nameOf(const ArImageAnchor& anchor) { return anchor.referenceImage->name; }

/// Without a mesh the page draws a rectangle about the pose, so the centre is added. It is added along the
/// world's axes, not turned into the anchor's frame: pages count on it.
Matrix planePose(const ArPlaneAnchor& plane, bool hasMesh) {
    Matrix pose = plane.transform;
    if (!hasMesh) {
        pose[3].x += plane.center.x;
        pose[3].y += plane.center.y;
        pose[3].z += plane.center.z;
    }
    return pose;
}

void sendGeometry(CVManagerDelegate& target, const ArPlaneAnchor& plane) {
    const auto& mesh = plane.geometry;
    if (!mesh)
        return;
    target.onPlaneGeometryUpdated(plane.identifier, {mesh, mesh->vertices.data()}, int(mesh->vertices.size()),
                                  {mesh, mesh->triangleIndices.data()}, int(mesh->triangleIndices.size()));
}

float distance(const Vector4& from, const Vector4& to) {
    return std::hypot(to.x - from.x, to.y - from.y, to.z - from.z);
}

bool isInside(const Point& point, const Size& viewport) {
    return point.x > 0 && point.x < viewport.width && point.y > 0 && point.y < viewport.height;
}

} // namespace

void ARKitMarkerlessProcessor::didAddAnchors(const ArAnchors& anchors) {
    sendTriggers(anchors, &CVManagerDelegate::onTriggerAdded);
    sendPlanes(anchors, &CVManagerDelegate::onPlaneAdded);
}

void ARKitMarkerlessProcessor::didUpdateAnchors(const ArAnchors& anchors) {
    sendTriggers(forgetLost(anchors), &CVManagerDelegate::onTriggerUpdated);
    sendPlanes(anchors, &CVManagerDelegate::onPlaneUpdated);
}

void ARKitMarkerlessProcessor::didRemoveAnchors(const ArAnchors& anchors) {
    const auto listener = target();
    if (!listener || !systemIsAtLeast(11.0))
        return;
    if (isFullMarkerTrackingSupported())
        forEach<ArImageAnchor>(anchors,
                               [&](const auto& image) { listener->onTriggerRemoved(nameOf(image)); });
    else
        forEach<ArPlaneAnchor>(anchors,
                               [&](const auto& plane) { listener->onPlaneRemoved(plane.identifier); });
}

/// Images that are followed without a world stay where they were lost; forgotten, they are found afresh.
/// Returns the others.
ArAnchors ARKitMarkerlessProcessor::forgetLost(const ArAnchors& anchors) const {
    bool followsImages = false;
    {
        const std::lock_guard lock(m_mutex);
        followsImages = is_realtimemarker;
    }
    if (!followsImages || !systemIsAtLeast(12.0) || !isFullMarkerTrackingSupported())
        return anchors;
    ArAnchors present;
    for (const auto& anchor : anchors) {
        const auto* image = dynamic_cast<const ArImageAnchor*>(anchor.get());
        if (image && !image->isTracked)
            session->removeAnchor(image->identifier);
        else
            present.push_back(anchor);
    }
    return present;
}

void ARKitMarkerlessProcessor::sendTriggers(const ArAnchors& anchors, AnchorOperation operation) const {
    const auto listener = target();
    if (!listener || !isFullMarkerTrackingSupported())
        return;
    forEach<ArImageAnchor>(anchors, [&](const ArImageAnchor& image) {
        const Size size = image.referenceImage->physicalSize();
        (listener.get()->*operation)(nameOf(image), image.transform, float(size.width), float(size.height));
    });
}

void ARKitMarkerlessProcessor::sendPlanes(const ArAnchors& anchors, AnchorOperation operation) const {
    const auto listener = target();
    if (!listener || !systemIsAtLeast(11.0))
        return;
    const bool hasMesh =
        systemIsAtLeast(11.3) && KestrinFeatureFlags::getInstance()->containsFlag("planegeometry");
    forEach<ArPlaneAnchor>(anchors, [&](const ArPlaneAnchor& plane) {
        (listener.get()->*operation)(plane.identifier, planePose(plane, hasMesh), plane.extent.x,
                                     plane.extent.z);
        if (hasMesh)
            sendGeometry(*listener, plane);
    });
}

std::optional<std::string> ARKitMarkerlessProcessor::snapMarker() const {
    const auto frame = session && systemIsAtLeast(11.3) ? session->currentFrame() : nullptr;
    if (!frame || !frame->camera)
        return std::nullopt;
    int orientation = 0;
    Size viewport;
    {
        const std::lock_guard lock(m_mutex);
        orientation = last_orientation;
        viewport = {double(init_width), double(init_height)};
    }
    const Matrix camera = frame->camera->transform();
    const ArImageAnchor* nearest = nullptr;
    float shortest = 0;
    forEach<ArImageAnchor>(frame->anchors, [&](const ArImageAnchor& image) {
        const Vector4 at = calc_position(image.transform);
        const Point seen = frame->camera->projectPoint({at.x, at.y, at.z}, orientation, viewport);
        log("projection - (%f %f) viewport - (%f %f) angle - (%f)", seen.x, seen.y, viewport.width,
            viewport.height, is_behind(camera, image.transform) + 5.0);
        if (!isInside(seen, viewport))
            return;
        log("passed - %@", nameOf(image));
        const float away = distance(calc_position(camera), at);
        if (!nearest || away < shortest) {
            nearest = &image;
            shortest = away;
        }
    });
    return nearest ? std::optional(nameOf(*nearest)) : std::nullopt;
}

} // namespace kestrin
