#include "Tally.h"

#include "services/util/Format.h"
#include "services/util/Json.h"

#include <boost/json/object.hpp>

namespace kestrin::view {

void Tally::update(const boost::json::object& event) {
    const auto poses = wholeNumberOf(findMember(event, {"data", "poses"}));
    const auto rendered = wholeNumberOf(findMember(event, {"data", "rendered"}));
    if (!poses || !rendered)
        return;
    m_poses = *poses;
    m_rendered = *rendered;
    if (m_poses > 0 && !m_firstPose)
        m_firstPose = Clock::now();
}

double Tally::milliseconds(Clock::time_point until) const {
    return std::chrono::duration<double, std::milli>(until - m_began).count();
}

std::string Tally::summary(std::int64_t frames) const {
    const double whole = milliseconds(Clock::now());
    if (!m_firstPose)
        return format("frames %i  the page reports no poses  milliseconds %.0f", frames, whole);
    const double first = milliseconds(*m_firstPose);
    const double perSecond = whole > first ? double(m_rendered) * 1000 / (whole - first) : 0;
    return format("frames %i  poses received by the page %i  rendered %i (%.1f a second)  "
                  "milliseconds %.0f (first pose after %.0f)",
                  frames, m_poses, m_rendered, perSecond, whole, first);
}

} // namespace kestrin::view
