#include "session/recording/AnchorReader.h"

#include "session/Field.h"
#include "session/recording/RecordingLimits.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrin::session {

namespace {

constexpr double kMostFloat = std::numeric_limits<float>::max();
constexpr double kFarthest = 1e6; // pixels

bool isRigid(const Matrix& m) {
    const auto axis = [&](std::size_t i) { return Vector3{m[i].x, m[i].y, m[i].z}; };
    const auto isNear = [](float value, float wanted) { return std::abs(value - wanted) < 1e-3F; };
    bool unit = true, square = true;
    for (std::size_t i = 0; i < 3; ++i) {
        unit = unit && isNear(dot(axis(i), axis(i)), 1);
        square = square && isNear(dot(axis(i), axis((i + 1) % 3)), 0);
    }
    return unit && square && dot(cross(axis(0), axis(1)), axis(2)) > 0 && m[0].w == 0 && m[1].w == 0 &&
           m[2].w == 0 && m[3].w == 1;
}

Vector3 readVector(const Field& field) {
    const auto v = field.numbers(3, -kMostFloat, kMostFloat, "expected 3 finite numbers");
    return {float(v[0]), float(v[1]), float(v[2])};
}

std::shared_ptr<const platform::ArPlaneGeometry> readGeometry(const Field& field) {
    const auto numbers = field["vertices"].groups(3, 3 * kMostVertices, -kMostFloat, kMostFloat,
                                                  "expected finite numbers, three a vertex");
    auto geometry = std::make_shared<platform::ArPlaneGeometry>();
    for (std::size_t i = 0; i < numbers.size(); i += 3)
        geometry->vertices.push_back({float(numbers[i]), float(numbers[i + 1]), float(numbers[i + 2])});
    const Field list = field["triangles"];
    const std::string expected = "expected whole numbers below the count of vertices, three a triangle";
    for (const double index :
         list.groups(3, 3 * kMostTriangles, 0, double(geometry->vertices.size()) - 1, expected)) {
        if (index != std::floor(index))
            list.fail(expected);
        geometry->triangleIndices.push_back(std::int16_t(index));
    }
    return geometry;
}

std::shared_ptr<platform::ArAnchor> readPlane(const Field& field) {
    field.allowKeys({"type", "id", "pose", "center", "extent", "vertical", "vertices", "triangles"});
    auto plane = std::make_shared<platform::ArPlaneAnchor>();
    plane->center = readVector(field["center"]);
    plane->extent = readVector(field["extent"]);
    plane->isVertical = field["vertical"].flag();
    if (field.find("vertices") || field.find("triangles"))
        plane->geometry = readGeometry(field);
    return plane;
}

std::shared_ptr<platform::ArAnchor> readImage(const Field& field) {
    field.allowKeys({"type", "id", "pose", "name", "width", "tracked"});
    auto reference = std::make_shared<platform::ArReferenceImage>();
    reference->name = field["name"].text();
    reference->physicalWidth = field["width"].number(0, 1000);
    auto image = std::make_shared<platform::ArImageAnchor>();
    image->referenceImage = std::move(reference);
    image->isTracked = field["tracked"].flag();
    return image;
}

std::shared_ptr<platform::ArAnchor> readTyped(const Field& field) {
    const Field type = field["type"];
    const std::string name = type.text();
    if (name == "plane")
        return readPlane(field);
    if (name == "image")
        return readImage(field);
    if (name != "anchor")
        type.fail("expected plane, image or anchor");
    field.allowKeys({"type", "id", "pose"});
    return std::make_shared<platform::ArAnchor>();
}

} // namespace

Matrix readPose(const Field& field) {
    const auto n = field.numbers(16, -kMostFloat, kMostFloat, "expected 16 finite numbers");
    Matrix pose;
    for (std::size_t i = 0; i < 4; ++i)
        pose[i] = {float(n[4 * i]), float(n[4 * i + 1]), float(n[4 * i + 2]), float(n[4 * i + 3])};
    if (!isRigid(pose))
        field.fail("expected a rotation and a translation");
    return pose;
}

platform::Intrinsics readIntrinsics(const Field& field) {
    const std::string expected = "expected fx, fy, cx, cy in pixels";
    const auto n = field.numbers(4, -kFarthest, kFarthest, expected);
    if (!(n[0] > 0 && n[1] > 0))
        field.fail(expected);
    return {n[0], n[1], n[2], n[3]};
}

std::shared_ptr<const platform::ArAnchor> readAnchor(const Field& field) {
    auto anchor = readTyped(field);
    anchor->identifier = field["id"].text();
    anchor->transform = readPose(field["pose"]);
    return anchor;
}

} // namespace kestrin::session
