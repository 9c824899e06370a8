#pragma once

#include "session/import/TextTable.h"

#include <Eigen/Geometry>

#include <filesystem>
#include <optional>
#include <vector>

namespace kestrin::session {

/// Where something was, and how it was turned, at one moment.
struct StampedPose {
    Stamp stamp = 0;
    Eigen::Vector3d position;
    Eigen::Quaterniond rotation; ///< a unit

    Eigen::Isometry3d transform() const;
};

/// A path through a data set's world. Throws ImportError when a line is wrong or times do not go up.
class Trajectory {
  public:
    /// Lines of `t tx ty tz qx qy qz qw`, t in seconds.
    static Trajectory readTum(const std::filesystem::path& file);
    /// Lines of `t,px,py,pz,qw,qx,qy,qz` and more, t in nanoseconds.
    static Trajectory readEuroc(const std::filesystem::path& file);

    const std::vector<StampedPose>& poses() const { return m_poses; }
    /// The position between its neighbours in a straight line, the rotation on the shortest arc. None outside
    /// the path and in a hole of more than a quarter of a second.
    std::optional<Eigen::Isometry3d> at(Stamp stamp) const;

  private:
    void add(const TableRow& row, Stamp stamp, double qw, double qx, double qy, double qz);

    std::vector<StampedPose> m_poses;
};

} // namespace kestrin::session
