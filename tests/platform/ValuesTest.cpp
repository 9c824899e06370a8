#include "platform/Matrix.h"
#include "platform/Orientation.h"
#include "support/FakeDispatch.h"

#include <gtest/gtest.h>

using namespace kestrin::platform;

TEST(Matrix, InverseUndoesOrIsZero) {
    // Turned by 90 degrees about y, moved, and projected.
    const Matrix m = Matrix{{{{0, 0, -1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}, {4, -5, 6, 1}}}} *
                     Matrix{{{{2, 0, 0, 0}, {0, 2, 0, 0}, {0.25F, -0.5F, -1, -1}, {0, 0, -2, 0}}}};
    EXPECT_EQ(inverse(m) * (m * Vector4{1, 2, 3, 1}), (Vector4{1, 2, 3, 1}));
    EXPECT_EQ(inverse(Matrix()), Matrix());
    const AffineTransform turned{0, -1, 1, 0, 0, 1};
    EXPECT_EQ(inverse(turned) * (turned * Point{0.25, 0.75}), (Point{0.25, 0.75}));
}

TEST(InterfaceOrientation, IsPinnedForOneThreadOnly) {
    InterfaceOrientation orientation(1);
    {
        const InterfaceOrientation::Pin pin(3);
        orientation.set(4);
        EXPECT_EQ(orientation.current(), 3);
        kestrin::test::offMain([&] { EXPECT_EQ(orientation.current(), 4); });
    }
    EXPECT_EQ(orientation.current(), 4);
}
