#include "platform/Matrix.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kestrin::platform;

namespace {

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
}

TEST(Matrix, InverseUndoesOrIsZero) {
    const Matrix m{{{{2, 0, 0, 0}, {0, 2, 0, 0}, {0.25F, -0.5F, -1, -1}, {0, 0, -2, 0}}}};
    const Vector4 there = translation(4, -5, 6) * quarterTurn() * m * Vector4{1, 2, 3, 1};
    const Vector4 back = inverse(translation(4, -5, 6) * quarterTurn() * m) * there;
    EXPECT_EQ(back, (Vector4{1, 2, 3, 1}));
    Matrix flat = translation(1, 2, 3), broken = flat;
    flat[1] = {};
    broken[2].z = std::numeric_limits<float>::quiet_NaN();
    for (const Matrix& none : {Matrix(), flat, broken})
        EXPECT_EQ(inverse(none), Matrix());
}

TEST(AffineTransform, InverseUndoesOrIsZero) {
    const AffineTransform turned{0, -1, 1, 0, 0, 1};
    EXPECT_EQ(inverse(turned) * (turned * Point{0.25, 0.75}), (Point{0.25, 0.75}));
    EXPECT_EQ(inverse(AffineTransform{1, 2, 2, 4, 5, 6}), AffineTransform());
}
