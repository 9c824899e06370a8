#include "platform/Matrix.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrin::platform {

Vector4 operator*(const Matrix& m, const Vector4& v) {
    return {m[0].x * v.x + m[1].x * v.y + m[2].x * v.z + m[3].x * v.w,
            m[0].y * v.x + m[1].y * v.y + m[2].y * v.z + m[3].y * v.w,
            m[0].z * v.x + m[1].z * v.y + m[2].z * v.z + m[3].z * v.w,
            m[0].w * v.x + m[1].w * v.y + m[2].w * v.z + m[3].w * v.w};
}

Matrix operator*(const Matrix& left, const Matrix& right) {
    return {{{left * right[0], left * right[1], left * right[2], left * right[3]}}};
}

namespace {

using Rows = std::array<std::array<double, 8>, 4>;

Rows augmented(const Matrix& m) {
    Rows rows{};
    for (std::size_t column = 0; column < 4; ++column) {
        const Vector4& v = m[column];
        rows[0][column] = v.x;
        rows[1][column] = v.y;
        rows[2][column] = v.z;
        rows[3][column] = v.w;
        rows[column][column + 4] = 1;
    }
    return rows;
}

void eliminate(Rows& rows, std::size_t pivot) {
    const double scale = 1 / rows[pivot][pivot];
    for (double& value : rows[pivot])
        value *= scale;
    for (std::size_t row = 0; row < 4; ++row) {
        const double factor = row == pivot ? 0 : rows[row][pivot];
        for (std::size_t column = 0; factor != 0 && column < 8; ++column)
            rows[row][column] -= factor * rows[pivot][column];
    }
}

} // namespace

Matrix inverse(const Matrix& matrix) {
    Rows rows = augmented(matrix);
    for (std::size_t pivot = 0; pivot < 4; ++pivot) {
        std::size_t best = pivot;
        for (std::size_t row = pivot + 1; row < 4; ++row)
            if (std::abs(rows[row][pivot]) > std::abs(rows[best][pivot]))
                best = row;
        if (!(std::abs(rows[best][pivot]) > 1e-12))
            return {};
        std::swap(rows[pivot], rows[best]);
        eliminate(rows, pivot);
    }
    for (const auto& row : rows)
        if (!std::ranges::all_of(row, [](double value) { return std::isfinite(value); }))
            return {};
    Matrix result;
    for (std::size_t c = 0; c < 4; ++c)
        result[c] = {float(rows[0][c + 4]), float(rows[1][c + 4]), float(rows[2][c + 4]),
                     float(rows[3][c + 4])};
    return result;
}

Point operator*(const AffineTransform& t, const Point& p) {
    return {t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}

AffineTransform inverse(const AffineTransform& t) {
    const double determinant = t.a * t.d - t.b * t.c;
    if (!std::isnormal(determinant))
        return {};
    const double s = 1 / determinant;
    return {
        t.d * s, -t.b * s, -t.c * s, t.a * s, (t.c * t.ty - t.d * t.tx) * s, (t.b * t.tx - t.a * t.ty) * s};
}

} // namespace kestrin::platform
