#include "session/import/Trajectory.h"

#include <algorithm>
#include <cmath>

namespace kestrin::session {

namespace {

constexpr Stamp kLongestHole = 250'000'000;

} // namespace

Eigen::Isometry3d StampedPose::transform() const { return Eigen::Translation3d(position) * rotation; }

Trajectory Trajectory::readTum(const std::filesystem::path& file) {
    Trajectory trajectory;
    const TextTable table(file);
    for (const TableRow& row : table.rows()) {
        row.needColumns(8);
        trajectory.add(row, row.decimalSeconds(0), row.number(7), row.number(4), row.number(5),
                       row.number(6));
    }
    return trajectory;
}

Trajectory Trajectory::readEuroc(const std::filesystem::path& file) {
    Trajectory trajectory;
    const TextTable table(file);
    for (const TableRow& row : table.rows()) {
        row.needColumns(8);
        trajectory.add(row, row.nanoseconds(0), row.number(4), row.number(5), row.number(6), row.number(7));
    }
    return trajectory;
}

void Trajectory::add(const TableRow& row, Stamp stamp, double qw, double qx, double qy, double qz) {
    const Eigen::Quaterniond rotation(qw, qx, qy, qz);
    if (std::abs(rotation.norm() - 1) > 0.01)
        row.fail("the rotation is no unit quaternion");
    if (!m_poses.empty() && stamp <= m_poses.back().stamp)
        row.fail("the time does not go up");
    m_poses.push_back({stamp, {row.number(1), row.number(2), row.number(3)}, rotation.normalized()});
}

std::optional<Eigen::Isometry3d> Trajectory::at(Stamp stamp) const {
    const auto after = std::ranges::lower_bound(m_poses, stamp, {}, &StampedPose::stamp);
    if (after == m_poses.end())
        return {};
    if (after->stamp == stamp)
        return after->transform();
    if (after == m_poses.begin() || after->stamp - std::prev(after)->stamp > kLongestHole)
        return {};
    const StampedPose& before = *std::prev(after);
    const double share = double(stamp - before.stamp) / double(after->stamp - before.stamp);
    return StampedPose{stamp, before.position + share * (after->position - before.position),
                       before.rotation.slerp(share, after->rotation)}
        .transform();
}

} // namespace kestrin::session
