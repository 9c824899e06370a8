#include "session/import/Axes.h"

namespace kestrin::session {

Eigen::Matrix3d worldTurn(WorldUp up) {
    Eigen::Matrix3d turn = Eigen::Matrix3d::Identity();
    if (up == WorldUp::z)
        turn << 1, 0, 0, 0, 0, 1, 0, -1, 0;
    if (up == WorldUp::minusZ)
        turn << 1, 0, 0, 0, 0, -1, 0, 1, 0;
    return turn;
}

Eigen::Matrix3d cameraTurn(CameraAxes axes) {
    const double sign = axes == CameraAxes::downForward ? -1 : 1;
    return Eigen::Vector3d(1, sign, sign).asDiagonal();
}

platform::Matrix kestrinPose(const Eigen::Isometry3d& worldFromCamera, WorldUp up, CameraAxes axes) {
    const Eigen::Matrix3d rotation = worldTurn(up) * worldFromCamera.linear() * cameraTurn(axes);
    const Eigen::Vector3d origin = worldTurn(up) * worldFromCamera.translation();
    platform::Matrix pose = platform::Matrix::identity();
    for (int column = 0; column < 4; ++column) {
        const Eigen::Vector3f values = (column < 3 ? rotation.col(column).eval() : origin).cast<float>();
        pose[std::size_t(column)] = {values.x(), values.y(), values.z(), column < 3 ? 0.0F : 1.0F};
    }
    return pose;
}

} // namespace kestrin::session
