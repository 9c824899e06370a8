#include "SteppedShow.h"

#include "Blobs.h"

#include "services/util/Json.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrin::test {

namespace {

constexpr double kLook = 0.06; ///< seconds between two looks
constexpr double kBeginningStep = 0.3;
constexpr int kSteadyLooks = 2;

bool samePixels(const platform::Image& a, const platform::Image& b) {
    return std::ranges::equal(a.pixels(), b.pixels());
}

} // namespace

SteppedShow::SteppedShow(const StageOptions& options) : m_stage(options) {}

bool SteppedShow::next() {
    if (!m_hasBegun && !begin())
        return false;
    m_hasBegun = true;
    const double before = reportedTime();
    return m_stage.step() && m_stage.runUntil([&] { return reportedTime() > before; }) &&
           m_stage.runUntil([this] { return showsNewFrame(); });
}

/// Steps until the page draws: its engine runs, and a projection has come. Slowly, as a recording has so many
/// frames and no more.
bool SteppedShow::begin() {
    return m_stage.runUntil([this] {
        m_stage.step();
        return m_stage.runUntil([this] { return !m_stage.report().empty(); }, kBeginningStep);
    });
}

double SteppedShow::reportedTime() const {
    const auto* time = findMember(m_stage.report(), {"timestamp"});
    return time && time->is_number() ? time->to_number<double>() : -1;
}

bool SteppedShow::showsNewFrame() {
    m_stage.runFor(kLook);
    const auto camera = m_stage.capture(*m_stage.view().getCameraView());
    const auto composed = m_stage.capture(m_stage.view());
    const bool isNew = camera.isValid() && !samePixels(camera, m_camera);
    const bool isSteady = isNew && samePixels(camera, m_candidate) && samePixels(composed, m_composed);
    m_steady = isSteady ? m_steady + 1 : 0;
    m_candidate = camera;
    m_composed = composed;
    if (m_steady < kSteadyLooks)
        return false;
    m_camera = camera;
    m_steady = 0;
    return true;
}

std::vector<platform::Point> SteppedShow::discs(const std::array<double, 3>& color, double radius) const {
    const double area = std::numbers::pi * radius * radius;
    std::vector<platform::Point> centres;
    for (const Blob& disc : findDiscs(m_composed, m_camera, color))
        if (!disc.touchesEdge && std::abs(disc.area / area - 1) < 0.05)
            centres.push_back(disc.centre);
    return centres;
}

} // namespace kestrin::test
