#include "tracking/Geometry.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace kestrin {

using namespace platform;

namespace {

constexpr float kHalf = 0.70710678F; // of a quarter turn

/// Quaternions and axes alike.
template <typename Four>
void expectNear(const Four& actual, const std::type_identity_t<Four>& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-5);
    EXPECT_NEAR(actual.y, expected.y, 1e-5);
    EXPECT_NEAR(actual.z, expected.z, 1e-5);
    EXPECT_NEAR(actual.w, expected.w, 1e-5);
}

Matrix rotation(const Vector4& x, const Vector4& y, const Vector4& z) {
    return {{{x, y, z, Vector4{0, 0, 0, 1}}}};
}

} // namespace

TEST(Geometry, ConvertsEveryKindOfRotation) {
    expectNear(simd_quaternion(rotation({0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0})), {0, 0, kHalf, kHalf});
    expectNear(simd_quaternion(rotation({1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, -1, 0})), {1, 0, 0, 0});
    expectNear(simd_quaternion(rotation({-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0})), {0, 1, 0, 0});
    expectNear(simd_quaternion(rotation({-1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0})), {0, 0, 1, 0});
    // Trace 0 still takes the first case: w is not 0.
    expectNear(simd_quaternion(rotation({0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0})), {0.5F, 0.5F, 0.5F, 0.5F});
}

TEST(Geometry, MeasuresAlongTheViewersOwnX) {
    Matrix viewer = rotation({0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}), object = Matrix::identity();
    viewer[3] = {1, 2, 3, 1};
    object[3] = {8, 9, 5, 1};
    EXPECT_NEAR(is_behind(viewer, object), -2, 1e-5);
}

} // namespace kestrin
