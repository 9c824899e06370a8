#include "platform/Image.h"
#include "platform/Orientation.h"
#include "support/FakeDispatch.h"

#include <gtest/gtest.h>

using namespace kestrin::platform;

TEST(Image, IsAbsentWhenItsPixelsDoNotFit) {
    const std::vector<std::uint8_t> six(24);
    EXPECT_TRUE(Image(3, 2, six).isValid());
    for (const Image& image :
         {Image(), Image(3, 3, six), Image(0, 0, {}), Image(-3, -2, six), Image(3, 2, six, 0)}) {
        EXPECT_FALSE(image.isValid());
        EXPECT_TRUE(image.pixels().empty());
    }
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
