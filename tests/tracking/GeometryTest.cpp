#include "tracking/Geometry.h"

#include <gtest/gtest.h>

namespace kestrin {

using namespace platform;

TEST(Geometry, ConvertsEveryKindOfRotation) {
    constexpr float h = 0.70710678F; // of a quarter turn
    const struct {
        Vector4 x, y, z;
        Quaternion expected;
    } cases[] = {
        {{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, h, h}},
        {{1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, -1, 0}, {1, 0, 0, 0}},
        {{-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0}},
        {{-1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 0}, {0, 0, 1, 0}},
        // Trace 0 still takes the first case: w is not 0.
        {{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {0.5F, 0.5F, 0.5F, 0.5F}},
    };
    for (const auto& [x, y, z, expected] : cases) {
        const Quaternion q = simd_quaternion({{{x, y, z, {0, 0, 0, 1}}}});
        EXPECT_NEAR(q.x, expected.x, 1e-5);
        EXPECT_NEAR(q.y, expected.y, 1e-5);
        EXPECT_NEAR(q.z, expected.z, 1e-5);
        EXPECT_NEAR(q.w, expected.w, 1e-5);
    }
}

} // namespace kestrin
