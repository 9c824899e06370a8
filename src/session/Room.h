#pragma once

#include "platform/ArSession.h"
#include "session/CameraPath.h"
#include "session/Geometry.h"

#include <string>
#include <variant>
#include <vector>

namespace kestrin::session {

/// A flat rectangle, seen from the side that `out` points to. The axes are a right-handed frame of unit
/// vectors.
struct Quad {
    Vector3 center, right, up, out;
    float width = 0, height = 0; ///< along `right` and `up`, metres

    /// With x and y in [-1, 1] from the centre.
    Vector3 at(float x, float y) const { return center + (x * width / 2) * right + (y * height / 2) * up; }
    /// Faces `out`; `up`, which must not be parallel to it, is made square to it.
    static Quad facing(const Vector3& out, const Vector3& up, const Vector3& center, float width,
                       float height);
    /// Of the sphere through the corners.
    float radius() const;
    /// +X right, -Z up, +Y out of the rectangle: the pose of a plane or picture anchor.
    Matrix anchorPose() const { return rigid(right, out, -1 * up, center); }
};

/// A texture that code makes, by name, or the pixels of a file.
using Texture = std::variant<std::string, platform::Image>;

struct Material {
    Texture texture;
    float tile = 0; ///< metres a repeat; 0 stretches the texture once over the surface
    Vector3 tint{1, 1, 1};
    bool glows = false; ///< shown as it is, whatever the light
};

struct Surface {
    std::string name;
    Quad quad;
    Material material;
    bool isPlane = false; ///< is found by plane detection
};

/// Stands upright, turned about the vertical.
struct Box {
    std::string name;
    Vector3 center, size;
    float turn = 0; ///< radians
    Material material;
    bool isPlane = false; ///< its top is

    std::vector<Surface> faces() const;
};

/// A printed picture or code on a surface.
struct Picture {
    std::string name;
    Quad quad;
    Texture texture;
};

/// A black disc in the middle of a white square, painted on whatever lies there.
struct Mark {
    Quad quad;
    float radius = 0; ///< metres
};

/// Shines from its front like a lit screen.
struct Lamp {
    Quad quad;
    Vector3 color; ///< brightness, any scale above 0
};

struct RoomLight {
    Vector3 ambient{0.5F, 0.5F, 0.5F};
    std::vector<Lamp> lamps;
    double lumens = 1000;          ///< the ambient intensity that frames report,
    double swing = 0, period = 60; ///< which goes up and down by `swing` in `period` seconds

    double intensityAt(double seconds) const;
};

/// While it lasts the tracker says `reason`; seconds since tracking began or was reset.
struct TrackingEvent {
    double from = 0, to = 0;
    platform::TrackingReason reason = platform::TrackingReason::none;
};

/// Everything that a simulated session shows. Metres, y up. Immutable once read. Thread: any.
struct Room {
    std::vector<Surface> surfaces;
    std::vector<Box> boxes;
    std::vector<Picture> pictures;
    std::vector<Mark> marks;
    RoomLight light;
    CameraPath path;
    double fieldOfView = 62; ///< along the longer side of the picture, degrees
    std::vector<TrackingEvent> tracking;

    /// The faces of the boxes, then the surfaces.
    std::vector<Surface> allSurfaces() const;
    platform::TrackingReason reasonAt(double seconds) const;
    /// An absent image when there is no picture of that name.
    platform::Image picture(const std::string& name) const;
};

} // namespace kestrin::session
