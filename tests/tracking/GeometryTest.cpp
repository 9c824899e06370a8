#include "tracking/Geometry.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrin {

using namespace platform;

namespace {

constexpr float kHalf = 0.70710678F; // of a quarter turn

void expectNear(const Quaternion& actual, const Quaternion& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5);
    EXPECT_NEAR(actual.y, expected.y, 1e-5);
    EXPECT_NEAR(actual.z, expected.z, 1e-5);
    EXPECT_NEAR(actual.w, expected.w, 1e-5);
}

void expectNear(const Vector4& actual, const Vector4& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5);
    EXPECT_NEAR(actual.y, expected.y, 1e-5);
    EXPECT_NEAR(actual.z, expected.z, 1e-5);
    EXPECT_EQ(actual.w, expected.w);
}

Matrix rotation(const Vector4& x, const Vector4& y, const Vector4& z) {
    return {{{x, y, z, Vector4{0, 0, 0, 1}}}};
}

Matrix movedBy(float x, float y, float z) {
    Matrix matrix = Matrix::identity();
    matrix[3] = {x, y, z, 1};
    return matrix;
}

} // namespace

TEST(Geometry, NamesTheAxesOfTheIdentity) {
    const Quaternion none{0, 0, 0, 1};
    expectNear(calc_forward(none), {0, 0, 1, 0});
    expectNear(calc_back(none), {0, 0, -1, 0});
    expectNear(calc_up(none), {0, 1, 0, 0});
    expectNear(calc_down(none), {0, -1, 0, 0});
    expectNear(calc_left(none), {1, 0, 0, 0});
    expectNear(calc_right(none), {-1, 0, 0, 0});
}

TEST(Geometry, TurnsTheAxesWithTheQuaternion) {
    // A quarter turn about each axis takes the second axis to the third.
    expectNear(calc_up({kHalf, 0, 0, kHalf}), {0, 0, 1, 0});
    expectNear(calc_forward({0, kHalf, 0, kHalf}), {1, 0, 0, 0});
    expectNear(calc_left({0, 0, kHalf, kHalf}), {0, 1, 0, 0});
    // Twice the length gives no unit axes before they are normalised.
    expectNear(calc_forward({0, 0, 2, 2}), {0, 0, 1, 0});
}

TEST(Geometry, ConvertsEveryKindOfRotation) {
    expectNear(simd_quaternion(Matrix::identity()), {0, 0, 0, 1});
    expectNear(simd_quaternion(rotation({0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0})), {0, 0, kHalf, kHalf});
    expectNear(simd_quaternion(rotation({1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, -1, 0})), {1, 0, 0, 0});
    expectNear(simd_quaternion(rotation({-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0})), {0, 1, 0, 0});
    expectNear(simd_quaternion(rotation({-1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0})), {0, 0, 1, 0});
}

TEST(Geometry, GoesBackFromAQuaternionToItsMatrix) {
    for (int i = 0; i < 1000; ++i) {
        const auto a = float(std::sin(i * 1.7)), b = float(std::sin(i * 2.9)), c = float(std::sin(i * 0.31)),
                   d = float(std::cos(i * 0.77));
        const float length = std::sqrt(a * a + b * b + c * c + d * d);
        const Quaternion q{a / length, b / length, c / length, d / length};
        const Quaternion back = simd_quaternion(rotation(calc_left(q), calc_up(q), calc_forward(q)));
        const float same = back.x * q.x + back.y * q.y + back.z * q.z + back.w * q.w;
        EXPECT_NEAR(std::abs(same), 1, 1e-5) << i;
    }
}

TEST(Geometry, BreaksTiesTowardsTheEarlierCase) {
    // Trace 0 still takes the first case: w is not 0.
    const Quaternion third = simd_quaternion(rotation({0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}));
    expectNear(third, {0.5F, 0.5F, 0.5F, 0.5F});
    // A half turn about the diagonal of x and y: m00 equals m11, so x is the exact one.
    const Quaternion diagonal = simd_quaternion(rotation({0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, -1, 0}));
    expectNear(diagonal, {kHalf, kHalf, 0, 0});
}

TEST(Geometry, MeasuresAlongTheViewersLeft) {
    EXPECT_FLOAT_EQ(is_behind(Matrix::identity(), movedBy(2, 0, 0)), 2);
    EXPECT_FLOAT_EQ(is_behind(Matrix::identity(), movedBy(0, 0, 5)), 0);
    Matrix viewer = rotation({0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0});
    viewer[3] = {1, 1, 1, 1};
    EXPECT_NEAR(is_behind(viewer, movedBy(9, 9, 4)), -3, 1e-5);
}

TEST(Geometry, MultipliesColumnByColumn) {
    const Matrix turn = rotation({0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0});
    const Matrix move = movedBy(1, 2, 3);
    EXPECT_EQ(calc_view_unscaled(move, Matrix::identity()), move);
    EXPECT_EQ(calc_view_unscaled(Matrix::identity(), move), move);
    EXPECT_EQ(calc_position(calc_view_unscaled(turn, move)), (Vector4{-2, 1, 3, 1}));
    EXPECT_EQ(calc_position(calc_view_unscaled(move, turn)), (Vector4{1, 2, 3, 1}));
}

} // namespace kestrin
