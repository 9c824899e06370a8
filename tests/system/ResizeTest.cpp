// A window resized by hand while the session runs.

#include "Desktop.h"
#include "MarkedShow.h"
#include "Quantile.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

constexpr int kPoses = 4;

TEST(Resize, ContentStaysOnThePictureWhateverTheSize) {
    const WindowManager manager;
    MarkedShow show({});
    ASSERT_TRUE(show.next());
    for (const auto& [width, height] :
         {std::pair{801, 533}, {417, 601}, {640, 479}, {331, 245}, {640, 640}}) {
        const auto size = platform::Size{double(width), double(height)};
        xdotool("windowsize", show.stage().window(), {std::to_string(width), std::to_string(height)});
        EXPECT_TRUE(show.stage().runUntil([&, size = size] {
            return show.stage().view().frame().size == size;
        })) << width
            << " x " << height;
        std::vector<double> distances;
        for (int pose = 0; pose < kPoses && show.next(); ++pose)
            for (const double off : show.distances())
                distances.push_back(off);
        EXPECT_EQ(show.composed().pixelWidth(), width);
        EXPECT_EQ(show.composed().pixelHeight(), height);
        ASSERT_GE(distances.size(), std::size_t(2 * kPoses)) << width << " x " << height;
        EXPECT_LE(quantile(distances, 0.5), 0.5) << width << " x " << height;
        EXPECT_LE(quantile(distances, 0.95), 1.0) << width << " x " << height;
    }
}

} // namespace

} // namespace kestrin::test
