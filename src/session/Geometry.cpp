#include "session/Geometry.h"

#include <cmath>

namespace kestrin::session {

using platform::Vector4;

float length(const Vector3& vector) { return std::sqrt(dot(vector, vector)); }

Vector3 normalized(const Vector3& vector) {
    const float size = length(vector);
    return size > 0 ? 1 / size * vector : vector;
}

Quaternion normalized(const Quaternion& q) {
    const float size = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    return size > 0 ? Quaternion{q.x / size, q.y / size, q.z / size, q.w / size} : Quaternion{};
}

Matrix rigid(const Vector3& x, const Vector3& y, const Vector3& z, const Vector3& origin) {
    return {
        {{{x.x, x.y, x.z, 0}, {y.x, y.y, y.z, 0}, {z.x, z.y, z.z, 0}, {origin.x, origin.y, origin.z, 1}}}};
}

Matrix rigid(const Quaternion& q, const Vector3& origin) {
    const Vector3 x{1 - 2 * (q.y * q.y + q.z * q.z), 2 * (q.x * q.y + q.w * q.z),
                    2 * (q.x * q.z - q.w * q.y)};
    const Vector3 y{2 * (q.x * q.y - q.w * q.z), 1 - 2 * (q.x * q.x + q.z * q.z),
                    2 * (q.y * q.z + q.w * q.x)};
    const Vector3 z{2 * (q.x * q.z + q.w * q.y), 2 * (q.y * q.z - q.w * q.x),
                    1 - 2 * (q.x * q.x + q.y * q.y)};
    return rigid(x, y, z, origin);
}

Matrix rigidInverse(const Matrix& m) {
    const Vector3 x{m[0].x, m[1].x, m[2].x}, y{m[0].y, m[1].y, m[2].y}, z{m[0].z, m[1].z, m[2].z};
    const Vector3 origin = position(m);
    return rigid(x, y, z, -1 * (origin.x * x + origin.y * y + origin.z * z));
}

Quaternion rotationOf(const Matrix& m) {
    // The largest of the four squared components is at least a quarter, so the division is safe.
    const float xx = 1 + m[0].x - m[1].y - m[2].z, yy = 1 - m[0].x + m[1].y - m[2].z;
    const float zz = 1 - m[0].x - m[1].y + m[2].z, ww = 1 + m[0].x + m[1].y + m[2].z;
    const Vector4 skew{m[1].z - m[2].y, m[2].x - m[0].z, m[0].y - m[1].x, 0};
    const Vector4 sum{m[1].z + m[2].y, m[2].x + m[0].z, m[0].y + m[1].x, 0};
    if (ww >= xx && ww >= yy && ww >= zz)
        return normalized(Quaternion{skew.x, skew.y, skew.z, ww});
    if (xx >= yy && xx >= zz)
        return normalized(Quaternion{xx, sum.z, sum.y, skew.x});
    if (yy >= zz)
        return normalized(Quaternion{sum.z, yy, sum.x, skew.y});
    return normalized(Quaternion{sum.y, sum.x, zz, skew.z});
}

Vector3 position(const Matrix& matrix) { return {matrix[3].x, matrix[3].y, matrix[3].z}; }

Vector3 transformPoint(const Matrix& matrix, const Vector3& point) {
    const Vector4 result = matrix * Vector4{point.x, point.y, point.z, 1};
    return {result.x, result.y, result.z};
}

Matrix lookAt(const Vector3& eye, const Vector3& target) {
    const Vector3 back = normalized(eye - target);
    Vector3 right = cross({0, 1, 0}, back);
    if (length(right) < 1e-4F)
        right = {1, 0, 0};
    right = normalized(right);
    return rigid(right, cross(back, right), back, eye);
}

} // namespace kestrin::session
