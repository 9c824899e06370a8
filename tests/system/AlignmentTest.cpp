// A page draws discs at known world points; marks are painted in the room at the same points. Where both are
// seen is read from pixels: the marks from the camera layer alone, the discs from the composed window.

#include "Blobs.h"
#include "Stage.h"

#include "services/util/Json.h"
#include "session/RoomFile.h"

#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrin::test {

namespace {

using session::Mounting;

constexpr int kPoses = 20;
constexpr double kSecondsAPose =
    2.5; ///< of the camera's path, so that two frames are never taken for one another
constexpr double kMarkRadius = 0.022, kMarkWidth = 0.1; ///< metres
constexpr double kTableTop = 0.7505;                    ///< metres above the floor
constexpr double kDiscArea = std::numbers::pi * 6.5 * 6.5;
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

std::string percentEncoded(const std::string& text) {
    const gtk::GText escaped(g_uri_escape_string(text.c_str(), nullptr, FALSE));
    return escaped.get();
}

std::string query(const std::string& fault) {
    boost::json::array points;
    for (const session::Vector3& point : markPoints())
        points.push_back({point.x, point.y, point.z});
    return "?points=" + percentEncoded(boost::json::serialize(points)) + "&fault=" + percentEncoded(fault);
}

struct Setting {
    int orientation;
    Mounting mounting;
};

StageOptions stageOptions(const Setting& setting, const std::string& fault) {
    StageOptions options;
    options.page = builtPage("align");
    options.query = query(fault);
    options.orientation = setting.orientation;
    if (setting.orientation <= 2)
        std::swap(options.width, options.height);
    options.simulation.room = markedRoom();
    options.simulation.rate = 1 / kSecondsAPose;
    options.simulation.mounting = setting.mounting;
    options.simulation.session.pacing = session::Pacing::stepped;
    return options;
}

/// Steps a session and measures each of its frames.
class Measurement {
  public:
    Measurement(const Setting& setting, const std::string& fault) : m_stage(stageOptions(setting, fault)) {}

    /// Distances in pixels, a disc each, all poses together.
    std::vector<double> run() {
        if (!begin())
            return {};
        for (int pose = 0; pose < kPoses && nextFrame(); ++pose)
            measure();
        return m_distances;
    }

  private:
    /// Steps until the page draws: its engine runs, and a projection has come.
    bool begin() {
        return m_stage.runUntil(
            [this] { return m_stage.tracking().step(0.01) && !m_stage.report().empty(); });
    }

    double reportedTime() const {
        const auto* time = findMember(m_stage.report(), {"timestamp"});
        return time && time->is_number() ? time->to_number<double>() : -1;
    }

    bool sameAsBefore(const platform::Image& camera) const {
        return std::ranges::equal(camera.pixels(), m_camera.pixels());
    }

    /// Makes a frame, and waits until the page has drawn it and both layers are shown and stay as they are.
    bool nextFrame() {
        const double before = reportedTime();
        if (!m_stage.step() || !m_stage.runUntil([&] { return reportedTime() > before; }))
            return false;
        return m_stage.runUntil([this] { return showsNewFrame(); });
    }

    bool showsNewFrame() {
        m_stage.runFor(0.06);
        const auto camera = m_stage.capture(*m_stage.view().getCameraView());
        const auto composed = m_stage.capture(m_stage.view());
        const bool isNew = camera.isValid() && !sameAsBefore(camera);
        const bool isSteady = isNew && std::ranges::equal(camera.pixels(), m_candidate.pixels()) &&
                              std::ranges::equal(composed.pixels(), m_composed.pixels());
        m_steady = isSteady ? m_steady + 1 : 0;
        m_candidate = camera;
        m_composed = composed;
        if (m_steady < 2)
            return false;
        m_camera = camera;
        m_steady = 0;
        return true;
    }

    void measure() {
        for (const Blob& disc : findDiscs(m_composed, m_camera, kMagenta)) {
            const bool whole = !disc.touchesEdge && std::abs(disc.area / kDiscArea - 1) < 0.05;
            if (!whole)
                continue;
            const auto mark = findMark(m_camera, disc.centre, kReach);
            m_distances.push_back(mark ? distance(mark->centre, disc.centre) : kMissed);
        }
    }

    Stage m_stage;
    platform::Image m_camera, m_candidate, m_composed;
    int m_steady = 0;
    std::vector<double> m_distances;
};

double quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values.empty() ? kMissed : values[std::size_t(share * double(values.size() - 1))];
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
    const auto distances = Measurement(setting, fault).run();
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
