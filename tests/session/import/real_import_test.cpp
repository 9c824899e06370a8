// A data set that is too large and not free to come with the program; the test is skipped without it.

#include "DataSets.h"
#include "session/Geometry.h"
#include "support/RealSequence.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <fstream>

namespace kestrin::session::test {

namespace {

using kestrin::test::realSequence;

/// Body poses of the ground truth, by their times in units of 10 microseconds.
std::vector<std::pair<double, Eigen::Isometry3d>> readTruth(const std::filesystem::path& file) {
    std::vector<std::pair<double, Eigen::Isometry3d>> poses;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        std::istringstream cells(line);
        double t = 0, x = 0, y = 0, z = 0, qx = 0, qy = 0, qz = 0, qw = 0;
        if (cells >> t >> x >> y >> z >> qx >> qy >> qz >> qw)
            poses.emplace_back(t, Eigen::Translation3d(x, y, z) *
                                      Eigen::Quaterniond(qw, qx, qy, qz).normalized());
    }
    return poses;
}

TEST(RealImport, EurocPosesAreTheGroundTruthAtTheFrames) {
    const auto folder = realSequence("euroc_mh01_30s");
    if (!std::filesystem::exists(folder))
        GTEST_SKIP() << folder << " is not there";
    const TemporaryFolder scratch;
    ImportOptions options;
    options.pictures = {280, 360};
    ASSERT_EQ(importFolder(folder, scratch / "out.krs", options), "");
    const auto opened = RecordingReader::open(scratch / "out.krs");
    const RecordingReader& reader = *std::get<0>(opened);
    ASSERT_EQ(reader.size(), 80U);

    Eigen::Matrix4d bodyFromCamera;
    bodyFromCamera << 0.0148655429818, -0.999880929698, 0.00414029679422, -0.0216401454975, 0.999557249008,
        0.0149672133247, 0.025715529948, -0.064676986768, -0.0257744366974, 0.00375618835797, 0.999660727178,
        0.00981073058949, 0, 0, 0, 1;
    const auto truth = readTruth(folder / "groundtruth_tum_imu_frame.txt");
    std::ifstream list(folder / "cam0/data.csv");
    std::string line;
    for (int i = 0; i <= 280; ++i)
        std::getline(list, line);
    Eigen::Vector3d gravity = Eigen::Vector3d::Zero();
    int readings = 0;
    for (std::size_t i = 0; i < reader.size(); ++i) {
        std::getline(list, line);
        const double time = 1e-9 * double(std::stoll(line));
        const auto after =
            std::ranges::lower_bound(truth, time, {}, [](const auto& pose) { return pose.first; });
        ASSERT_NE(after, truth.end());
        const auto before = std::prev(after);
        const double share = (time - before->first) / (after->first - before->first);
        const Eigen::Matrix3d turn = Eigen::Quaterniond(before->second.linear())
                                         .slerp(share, Eigen::Quaterniond(after->second.linear()))
                                         .toRotationMatrix();
        const Eigen::Vector3d origin = (1 - share) * before->second.translation() +
                                       share * after->second.translation() +
                                       turn * bodyFromCamera.col(3).head<3>();
        const platform::Matrix& pose = reader.frame(i).frame.sensorPose;
        const Vector3 place = position(pose);
        EXPECT_NEAR(place.x, origin.x(), 2e-6) << i;
        EXPECT_NEAR(place.y, origin.z(), 2e-6) << i;
        EXPECT_NEAR(place.z, -origin.y(), 2e-6) << i;
        const Eigen::Vector3d forward = turn * bodyFromCamera.col(2).head<3>();
        EXPECT_NEAR(-pose[2].x, forward.x(), 2e-6) << i;
        EXPECT_NEAR(-pose[2].y, forward.z(), 2e-6) << i;
        for (const ImuSample& sample : reader.frame(i).imu) {
            const Vector3 force{float(sample.acceleration[0]), float(sample.acceleration[1]),
                                float(sample.acceleration[2])};
            const Vector3 world = transformPoint(pose, force) - place;
            gravity += Eigen::Vector3d(world.x, world.y, world.z);
            ++readings;
        }
    }
    EXPECT_NEAR(readings, 79 * 10, 10);
    // The camera stands still by then: what the accelerometer feels points up.
    EXPECT_LT((gravity / readings - Eigen::Vector3d(0, 9.81, 0)).norm(), 0.3)
        << (gravity / readings).transpose();
}

} // namespace

} // namespace kestrin::session::test
