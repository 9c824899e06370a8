#include "tracking/Geometry.h"

#include <cmath>

namespace kestrin {

using platform::Matrix;
using platform::Quaternion;
using platform::Vector4;

namespace {

Vector4 direction(float x, float y, float z) {
    const float scale = 1 / std::sqrt(x * x + y * y + z * z);
    return {x * scale, y * scale, z * scale, 0};
}

Vector4 opposite(const Vector4& v) { return {-v.x, -v.y, -v.z, 0}; }

} // namespace

Vector4 calc_position(const Matrix& matrix) { return matrix[3]; }

Matrix calc_view_unscaled(const Matrix& left, const Matrix& right) { return left * right; }

Vector4 calc_forward(const Quaternion& q) {
    return direction(2 * (q.x * q.z + q.w * q.y), 2 * (q.y * q.z - q.w * q.x),
                     1 - 2 * (q.x * q.x + q.y * q.y));
}

Vector4 calc_back(const Quaternion& q) { return opposite(calc_forward(q)); }

Vector4 calc_up(const Quaternion& q) {
    return direction(2 * (q.x * q.y - q.w * q.z), 1 - 2 * (q.x * q.x + q.z * q.z),
                     2 * (q.y * q.z + q.w * q.x));
}

Vector4 calc_down(const Quaternion& q) { return opposite(calc_up(q)); }

Vector4 calc_left(const Quaternion& q) {
    return direction(1 - 2 * (q.y * q.y + q.z * q.z), 2 * (q.x * q.y + q.w * q.z),
                     2 * (q.x * q.z - q.w * q.y));
}

Vector4 calc_right(const Quaternion& q) { return opposite(calc_left(q)); }

float is_behind(const Matrix& viewer, const Matrix& object) {
    const Vector4 axis = calc_left(simd_quaternion(viewer));
    const Vector4 from = viewer[3];
    const Vector4 to = object[3];
    return axis.x * (to.x - from.x) + axis.y * (to.y - from.y) + axis.z * (to.z - from.z);
}

Quaternion simd_quaternion(const Matrix& m) {
    const float trace = m[0].x + m[1].y + m[2].z;
    if (trace >= 0) {
        const float r = 2 * std::sqrt(1 + trace);
        const float k = 1 / r;
        return {k * (m[1].z - m[2].y), k * (m[2].x - m[0].z), k * (m[0].y - m[1].x), r / 4};
    }
    if (m[0].x >= m[1].y && m[0].x >= m[2].z) {
        const float r = 2 * std::sqrt(1 - m[1].y - m[2].z + m[0].x);
        const float k = 1 / r;
        return {r / 4, k * (m[0].y + m[1].x), k * (m[0].z + m[2].x), k * (m[1].z - m[2].y)};
    }
    if (m[1].y >= m[2].z) {
        const float r = 2 * std::sqrt(1 - m[0].x - m[2].z + m[1].y);
        const float k = 1 / r;
        return {k * (m[0].y + m[1].x), r / 4, k * (m[1].z + m[2].y), k * (m[2].x - m[0].z)};
    }
    const float r = 2 * std::sqrt(1 - m[0].x - m[1].y + m[2].z);
    const float k = 1 / r;
    return {k * (m[0].z + m[2].x), k * (m[1].z + m[2].y), r / 4, k * (m[0].y - m[1].x)};
}

} // namespace kestrin
