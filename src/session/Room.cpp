#include "session/Room.h"

#include "session/Texture.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace kestrin::session {

Quad Quad::facing(const Vector3& out, const Vector3& up, const Vector3& center, float width, float height) {
    const Vector3 right = normalized(cross(up, out));
    return {center, right, cross(out, right), out, width, height};
}

float Quad::radius() const { return std::hypot(width, height) / 2; }

std::vector<Surface> Box::faces() const {
    const Vector3 x{std::cos(turn), 0, -std::sin(turn)}, y{0, 1, 0}, z{std::sin(turn), 0, std::cos(turn)};
    const auto face = [this](const Vector3& out, float distance, const Vector3& up, float width,
                             float height) {
        const Quad quad = Quad::facing(out, up, center + distance / 2 * out, width, height);
        return Surface{name, quad, material, isPlane && out.y > 0.5F};
    };
    return {face(y, size.y, -1 * z, size.x, size.z), face(-1 * y, size.y, z, size.x, size.z),
            face(x, size.x, y, size.z, size.y),      face(-1 * x, size.x, y, size.z, size.y),
            face(z, size.z, y, size.x, size.y),      face(-1 * z, size.z, y, size.x, size.y)};
}

double RoomLight::intensityAt(double seconds) const {
    return lumens + swing * std::sin(2 * std::numbers::pi * seconds / period);
}

std::vector<Surface> Room::allSurfaces() const {
    std::vector<Surface> all;
    for (const Box& box : boxes)
        for (Surface& face : box.faces())
            all.push_back(std::move(face));
    all.insert(all.end(), surfaces.begin(), surfaces.end());
    return all;
}

platform::TrackingReason Room::reasonAt(double seconds) const {
    for (const TrackingEvent& event : tracking)
        if (seconds >= event.from && seconds < event.to)
            return event.reason;
    return platform::TrackingReason::none;
}

platform::Image Room::picture(const std::string& name) const {
    for (const Picture& picture : pictures)
        if (picture.name == name)
            return textureImage(picture.texture);
    return {};
}

} // namespace kestrin::session
