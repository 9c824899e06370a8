#include "platform/Matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace kestrin::platform;

namespace {

float largestDifference(const Matrix& a, const Matrix& b) {
    float largest = 0;
    for (std::size_t c = 0; c < 4; ++c)
        for (const float d : {a[c].x - b[c].x, a[c].y - b[c].y, a[c].z - b[c].z, a[c].w - b[c].w})
            largest = std::fmax(largest, std::fabs(d));
    return largest;
}

Matrix translation(float x, float y, float z) {
    Matrix m = Matrix::identity();
    m[3] = {x, y, z, 1};
    return m;
}

/// 90 degrees about y: x goes to -z.
Matrix quarterTurn() { return {{{{0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}}}}; }

} // namespace

TEST(Matrix, AppliesTheRightFactorFirst) {
    const Vector4 turnedThenMoved = translation(1, 2, 3) * quarterTurn() * Vector4{1, 0, 0, 1};
    EXPECT_EQ(turnedThenMoved, (Vector4{1, 2, 2, 1}));
    const Vector4 movedThenTurned = quarterTurn() * translation(1, 2, 3) * Vector4{1, 0, 0, 1};
    EXPECT_EQ(movedThenTurned, (Vector4{3, 2, -2, 1}));
}

TEST(Matrix, InverseUndoes) {
    const Matrix projection{{{{1.5F, 0, 0, 0}, {0, 2, 0, 0}, {0.1F, -0.2F, -1.00001F, -1}, {0, 0, -2, 0}}}};
    for (const Matrix& m : {translation(4, -5, 6) * quarterTurn(), projection * translation(1, 2, 3)}) {
        EXPECT_LT(largestDifference(m * inverse(m), Matrix::identity()), 1e-5F);
        EXPECT_LT(largestDifference(inverse(m) * m, Matrix::identity()), 1e-4F);
    }
}

TEST(Matrix, InverseOfWhatHasNoneIsZero) {
    Matrix flat = translation(1, 2, 3);
    flat[1] = {};
    Matrix broken = Matrix::identity();
    broken[2].y = std::numeric_limits<float>::quiet_NaN();
    broken[2].z = std::numeric_limits<float>::quiet_NaN();
    for (const Matrix& m : {Matrix(), flat, broken})
        EXPECT_EQ(inverse(m), Matrix());
}

TEST(AffineTransform, InverseUndoesOrIsZero) {
    const AffineTransform turned{0, -1, 1, 0, 0, 1};
    const Point there = turned * Point{0.25, 0.75};
    EXPECT_EQ(there, (Point{0.75, 0.75}));
    EXPECT_EQ(inverse(turned) * there, (Point{0.25, 0.75}));
    EXPECT_EQ(inverse(AffineTransform()), AffineTransform());
    EXPECT_EQ(inverse(AffineTransform{1, 2, 2, 4, 5, 6}), AffineTransform());
    EXPECT_EQ(inverse(AffineTransform{std::nan(""), 0, 0, 1, 0, 0}), AffineTransform());
}
