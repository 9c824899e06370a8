#pragma once

#include <array>
#include <cstddef>

namespace kestrin::platform {

/// A 3-vector in a 16-byte slot; the fourth float is padding.
struct alignas(16) Vector3 {
    float x = 0, y = 0, z = 0;
    bool operator==(const Vector3&) const = default;
};

struct alignas(16) Vector4 {
    float x = 0, y = 0, z = 0, w = 0;
    bool operator==(const Vector4&) const = default;
};

/// A rotation: imaginary part first, real part last.
struct alignas(16) Quaternion {
    float x = 0, y = 0, z = 0, w = 1;
    bool operator==(const Quaternion&) const = default;
};

/// 4x4, single precision, column-major: columns[3] holds the translation. Multiplies column vectors.
struct alignas(16) Matrix {
    std::array<Vector4, 4> columns{};

    /// The zero matrix is the default value.
    static constexpr Matrix identity() {
        return {{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}};
    }
    const Vector4& operator[](std::size_t column) const { return columns[column]; }
    Vector4& operator[](std::size_t column) { return columns[column]; }
    bool operator==(const Matrix&) const = default;
};

Vector4 operator*(const Matrix& matrix, const Vector4& vector);
Matrix operator*(const Matrix& left, const Matrix& right);
/// The inverse; the zero matrix when there is none.
Matrix inverse(const Matrix& matrix);

struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    Point origin;
    Size size;
    bool operator==(const Rect&) const = default;
};

/// (x, y) -> (a x + c y + tx, b x + d y + ty). The default value is the zero transform.
struct AffineTransform {
    double a = 0, b = 0, c = 0, d = 0, tx = 0, ty = 0;

    static constexpr AffineTransform identity() { return {1, 0, 0, 1, 0, 0}; }
    bool operator==(const AffineTransform&) const = default;
};

Point operator*(const AffineTransform& transform, const Point& point);
/// The inverse; a transform that cannot be inverted gives zero, never a number that is not one.
AffineTransform inverse(const AffineTransform& transform);

} // namespace kestrin::platform
