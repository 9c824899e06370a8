// A page draws discs at known world points; marks are painted in the room at the same points. Where both are
// seen is read from pixels: the marks from the camera layer alone, the discs from the composed window.

#include "Blobs.h"
#include "Quantile.h"
#include "SteppedShow.h"

#include "services/util/Json.h"
#include "session/RoomFile.h"
#include "session/SimulatedTracking.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include <algorithm>

namespace kestrin::test {

namespace {

using session::Mounting;

constexpr int kPoses = 20;
constexpr double kSecondsAPose =
    2.5; ///< of the camera's path, so that two frames are never taken for one another
constexpr double kMarkRadius = 0.022, kMarkWidth = 0.1; ///< metres
constexpr double kTableTop = 0.7505;                    ///< metres above the floor
constexpr double kDiscRadius = 6.5;                     ///< pixels
constexpr double kReach = 20;  ///< pixels around a disc in which its mark is looked for
constexpr double kMissed = 99; ///< pixels, for a disc without a mark
constexpr std::array<double, 3> kMagenta{255, 0, 255};

/// On the table: never hidden, whichever way the camera goes round it.
std::vector<session::Vector3> markPoints() {
    std::vector<session::Vector3> points;
    for (const float x : {-0.36F, -0.12F, 0.12F, 0.36F})
        for (const float z : {-0.24F, 0.0F})
            points.push_back({x, float(kTableTop), z});
    return points;
}

std::shared_ptr<const session::Room> markedRoom() {
    auto room = std::make_shared<session::Room>(*session::defaultRoom());
    for (const session::Vector3& point : markPoints())
        room->marks.push_back({session::Quad::facing({0, 1, 0}, {0, 0, -1}, point, kMarkWidth, kMarkWidth),
                               float(kMarkRadius)});
    return room;
}

struct Setting {
    int orientation;
    Mounting mounting;
};

StageOptions stageOptions(const Setting& setting, const std::string& fault) {
    StageOptions options;
    options.page = builtPage("align");
    boost::json::array points;
    for (const session::Vector3& point : markPoints())
        points.push_back({point.x, point.y, point.z});
    options.query = {{"points", points}, {"fault", boost::json::parse(fault)}};
    options.orientation = setting.orientation;
    if (setting.orientation <= 2)
        std::swap(options.width, options.height);
    options.tracking = [setting](const platform::InterfaceOrientation& orientation) {
        session::SimulatedOptions simulation;
        simulation.room = markedRoom();
        simulation.rate = 1 / kSecondsAPose;
        simulation.mounting = setting.mounting;
        simulation.session.pacing = session::Pacing::stepped;
        simulation.session.orientation = &orientation;
        return std::make_shared<session::SimulatedTracking>(simulation);
    };
    return options;
}

/// Distances in pixels, a disc each, all poses together.
std::vector<double> measure(const Setting& setting, const std::string& fault) {
    std::vector<double> distances;
    SteppedShow show(stageOptions(setting, fault));
    for (int pose = 0; pose < kPoses && show.next(); ++pose)
        for (const platform::Point& disc : show.discs(kMagenta, kDiscRadius)) {
            const auto mark = findMark(show.camera(), disc, kReach);
            distances.push_back(mark ? distance(mark->centre, disc) : kMissed);
        }
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
