#pragma once

#include "platform/Matrix.h"

namespace kestrin::session {

using platform::Matrix;
using platform::Quaternion;
using platform::Vector3;

inline Vector3 operator+(const Vector3& a, const Vector3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vector3 operator-(const Vector3& a, const Vector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vector3 operator*(float s, const Vector3& v) { return {s * v.x, s * v.y, s * v.z}; }
inline float dot(const Vector3& a, const Vector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

float length(const Vector3& vector);
/// The zero vector stays zero.
Vector3 normalized(const Vector3& vector);
Quaternion normalized(const Quaternion& quaternion);

/// The axes are the first three columns.
Matrix rigid(const Vector3& x, const Vector3& y, const Vector3& z, const Vector3& origin);
/// A unit rotation and a translation.
Matrix rigid(const Quaternion& rotation, const Vector3& origin);
/// The inverse of a rotation with a translation.
Matrix rigidInverse(const Matrix& matrix);
/// The rotation of a rigid matrix.
Quaternion rotationOf(const Matrix& matrix);
Vector3 position(const Matrix& matrix);
Vector3 transformPoint(const Matrix& matrix, const Vector3& point);

/// A camera at `eye` that looks at `target` with +Y kept up; looking straight up or down keeps -Z of the
/// world up.
Matrix lookAt(const Vector3& eye, const Vector3& target);

} // namespace kestrin::session
