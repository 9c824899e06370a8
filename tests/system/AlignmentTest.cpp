// A page draws discs at known world points; marks are painted in the room at the same points. Where both are
// seen is read from pixels: the marks from the camera layer alone, the discs from the composed window.

#include "MarkedShow.h"
#include "Quantile.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

using session::Mounting;

constexpr int kPoses = 20;

struct Setting {
    int orientation;
    Mounting mounting;
};

/// Distances in pixels, a disc each, all poses together.
std::vector<double> measure(const Setting& setting, const std::string& fault) {
    std::vector<double> distances;
    MarkedShow show({setting.orientation, setting.mounting, fault});
    for (int pose = 0; pose < kPoses && show.next(); ++pose)
        for (const double off : show.distances())
            distances.push_back(off);
    return distances;
}

struct Verdict {
    std::size_t discs;
    double median, p95;
    /// At least four discs a pose were seen, and they lie on their marks.
    bool passes() const { return discs >= 4 * kPoses && median <= 0.5 && p95 <= 1.0; }
};

std::ostream& operator<<(std::ostream& stream, const Verdict& verdict) {
    return stream << verdict.discs << " discs, median " << verdict.median << " px, 95 % " << verdict.p95
                  << " px";
}

Verdict judge(const Setting& setting, const std::string& fault) {
    const auto distances = measure(setting, fault);
    const Verdict verdict{distances.size(), quantile(distances, 0.5), quantile(distances, 0.95)};
    std::cout << verdict << '\n';
    return verdict;
}

class Alignment : public testing::TestWithParam<Setting> {};

TEST_P(Alignment, ContentLiesOnThePicture) {
    const Verdict verdict = judge(GetParam(), "{}");
    EXPECT_TRUE(verdict.passes()) << verdict;
}

std::string settingName(const testing::TestParamInfo<Setting>& info) {
    constexpr std::array kNames{"Portrait", "PortraitDown", "LandscapeRight", "LandscapeLeft"};
    return std::string(kNames[std::size_t(info.param.orientation - 1)]) +
           (info.param.mounting == Mounting::turned ? "Turned" : "Upright");
}

INSTANTIATE_TEST_SUITE_P(Orientations, Alignment,
                         testing::Values(Setting{1, Mounting::turned}, Setting{2, Mounting::turned},
                                         Setting{3, Mounting::turned}, Setting{4, Mounting::turned},
                                         Setting{1, Mounting::upright}, Setting{2, Mounting::upright},
                                         Setting{3, Mounting::upright}, Setting{4, Mounting::upright}),
                         settingName);

struct Fault {
    const char* name;
    const char* text;
};

class AlignmentFault : public testing::TestWithParam<Fault> {};

TEST_P(AlignmentFault, IsSeen) {
    const Verdict verdict = judge({1, Mounting::turned}, GetParam().text);
    EXPECT_GE(verdict.discs, std::size_t(kPoses)) << "too few to judge by";
    EXPECT_FALSE(verdict.passes()) << verdict;
}

INSTANTIATE_TEST_SUITE_P(Faults, AlignmentFault,
                         testing::Values(Fault{"HalfPixel", R"({"shiftX":0.5,"shiftY":0.5})"},
                                         Fault{"OneFrameSlip", R"({"slip":1})"},
                                         Fault{"Mirror", R"({"mirror":true})"}),
                         [](const auto& fault) { return fault.param.name; });

} // namespace

} // namespace kestrin::test
