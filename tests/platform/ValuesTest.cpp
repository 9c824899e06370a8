#include "platform/ArSession.h"
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
        EXPECT_EQ(image.size(), Size());
        EXPECT_TRUE(image.pixels().empty());
    }
    EXPECT_EQ(Image(3, 2, six, 2).size(), (Size{1.5, 1}));
}

TEST(ArReferenceImage, HeightFollowsTheShape) {
    ArReferenceImage reference{"poster", Image(4, 2, std::vector<std::uint8_t>(32)), 0.5};
    EXPECT_EQ(reference.physicalSize(), (Size{0.5, 0.25}));
    reference.image = {};
    EXPECT_EQ(reference.physicalSize(), Size());
}

TEST(InterfaceOrientation, IsPinnedForOneThreadOnly) {
    InterfaceOrientation orientation(1);
    {
        const InterfaceOrientation::Pin outer(3);
        orientation.set(4);
        EXPECT_EQ(orientation.current(), 3);
        {
            const InterfaceOrientation::Pin inner(2);
            EXPECT_EQ(orientation.current(), 2);
        }
        EXPECT_EQ(orientation.current(), 3);
        int elsewhere = 0;
        kestrin::test::offMain([&] { elsewhere = orientation.current(); });
        EXPECT_EQ(elsewhere, 4);
    }
    EXPECT_EQ(orientation.current(), 4);
}
