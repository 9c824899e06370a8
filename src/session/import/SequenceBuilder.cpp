#include "session/import/SequenceBuilder.h"

#include "session/import/Axes.h"

#include <algorithm>

namespace kestrin::session {

std::vector<ListedPicture> readPictureList(const std::filesystem::path& table,
                                           const std::filesystem::path& folder, TimeUnit unit,
                                           const PictureRange& range) {
    std::vector<ListedPicture> pictures;
    const TextTable lines(table);
    for (const TableRow& row : lines.rows()) {
        row.needColumns(2);
        const Stamp stamp = unit == TimeUnit::seconds ? row.decimalSeconds(0) : row.nanoseconds(0);
        if (!pictures.empty() && stamp <= pictures.back().stamp)
            row.fail("the time does not go up");
        pictures.push_back({stamp, folder / row.text(1)});
    }
    keepRange(pictures, range, folder);
    return pictures;
}

void placeShots(Sequence& sequence, const std::vector<ListedPicture>& pictures, const Trajectory& path,
                const Eigen::Isometry3d& bodyFromCamera) {
    for (const ListedPicture& picture : pictures) {
        if (const auto body = path.at(picture.stamp))
            sequence.shots.push_back(
                {picture.stamp,
                 picture.file,
                 kestrinPose(*body * bodyFromCamera, WorldUp::z, CameraAxes::downForward),
                 {}});
        else
            ++sequence.leftOut;
    }
}

void placeImu(Sequence& sequence, const std::vector<StampedImu>& readings,
              const Eigen::Matrix3d& cameraFromImu) {
    const Eigen::Matrix3d turn = cameraTurn(CameraAxes::downForward) * cameraFromImu;
    const Stamp begin = sequence.shots.front().stamp;
    auto reading = std::ranges::lower_bound(readings, begin, {}, &StampedImu::stamp);
    for (Shot& shot : sequence.shots)
        for (; reading != readings.end() && reading->stamp <= shot.stamp; ++reading) {
            ImuSample& sample = shot.imu.emplace_back();
            sample.time = seconds(reading->stamp - begin);
            Eigen::Map<Eigen::Vector3d>(sample.rotation) = turn * reading->rotation;
            Eigen::Map<Eigen::Vector3d>(sample.acceleration) = turn * reading->acceleration;
        }
}

double rateOf(const std::vector<Shot>& shots, double otherwise) {
    std::vector<Stamp> steps;
    for (std::size_t i = 1; i < shots.size(); ++i)
        steps.push_back(shots[i].stamp - shots[i - 1].stamp);
    if (steps.empty())
        return otherwise;
    const auto middle = steps.begin() + std::ptrdiff_t(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return 1 / seconds(*middle);
}

} // namespace kestrin::session
