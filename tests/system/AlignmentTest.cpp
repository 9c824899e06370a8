// Content lies on the picture, whichever way the screen and the sensor are turned; and it is seen when it
// does not.

#include "MarkedShow.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

using session::Mounting;

constexpr int kPoses = 20;

struct Setting {
    const char* name;
    int orientation;
    Mounting mounting;
    const char* fault = "{}";
};

class Alignment : public testing::TestWithParam<Setting> {};

TEST_P(Alignment, IsSeenAsItIs) {
    const auto& [name, orientation, mounting, fault] = GetParam();
    const Spread spread = MarkedShow({orientation, mounting, fault}).measure(kPoses);
    std::cout << spread << '\n';
    EXPECT_GE(spread.count, std::size_t(kPoses)) << "too few to judge by";
    const bool isAligned = spread.count >= 4 * kPoses && spread.median <= 0.5 && spread.p95 <= 1.0;
    EXPECT_EQ(isAligned, fault == std::string("{}")) << spread;
}

INSTANTIATE_TEST_SUITE_P(, Alignment,
                         testing::Values(Setting{"PortraitTurned", 1, Mounting::turned},
                                         Setting{"PortraitDownTurned", 2, Mounting::turned},
                                         Setting{"LandscapeRightTurned", 3, Mounting::turned},
                                         Setting{"LandscapeLeftTurned", 4, Mounting::turned},
                                         Setting{"PortraitUpright", 1, Mounting::upright},
                                         Setting{"PortraitDownUpright", 2, Mounting::upright},
                                         Setting{"LandscapeRightUpright", 3, Mounting::upright},
                                         Setting{"LandscapeLeftUpright", 4, Mounting::upright},
                                         Setting{"FaultHalfPixel", 1, Mounting::turned,
                                                 R"({"shiftX":0.5,"shiftY":0.5})"},
                                         Setting{"FaultOneFrameSlip", 1, Mounting::turned, R"({"slip":1})"},
                                         Setting{"FaultMirror", 1, Mounting::turned, R"({"mirror":true})"}),
                         [](const auto& setting) { return setting.param.name; });

} // namespace

} // namespace kestrin::test
