#pragma once

#include "session/import/ImportError.h"
#include "session/import/Sequence.h"
#include "session/import/Trajectory.h"

namespace kestrin::session {

/// A picture of which only the time is known.
struct ListedPicture {
    Stamp stamp = 0;
    std::filesystem::path file;
};

/// One reading of an inertial sensor, in the sensor's axes.
struct StampedImu {
    Stamp stamp = 0;
    Eigen::Vector3d rotation, acceleration;
};

enum class TimeUnit { nanoseconds, seconds };

/// The pictures that a table names with their times, each file in `folder`, those that are asked for only.
/// Throws ImportError.
std::vector<ListedPicture> readPictureList(const std::filesystem::path& table,
                                           const std::filesystem::path& folder, TimeUnit unit,
                                           const PictureRange& range);

/// Drops what is not asked for. Throws ImportError that names the folder when nothing is left.
template <class T>
void keepRange(std::vector<T>& pictures, const PictureRange& range, const std::filesystem::path& folder) {
    if (range.from >= pictures.size() || range.to <= range.from)
        throw ImportError(folder.string() + ": has " + std::to_string(pictures.size()) +
                          " pictures, none of them in the range asked for");
    if (range.to < pictures.size())
        pictures.resize(range.to);
    pictures.erase(pictures.begin(), pictures.begin() + std::ptrdiff_t(range.from));
}

/// Makes shots of the pictures for which `path` knows the pose of the body that carries the camera; the rest
/// is counted as left out. World z points up, the camera looks along its z.
void placeShots(Sequence& sequence, const std::vector<ListedPicture>& pictures, const Trajectory& path,
                const Eigen::Isometry3d& bodyFromCamera);

/// Gives every shot the readings since the one before it, from the first shot's moment on, in Kestrin's
/// camera axes.
void placeImu(Sequence& sequence, const std::vector<StampedImu>& readings,
              const Eigen::Matrix3d& cameraFromImu);

/// Frames a second, from the usual distance of two shots; `otherwise` when there is one only.
double rateOf(const std::vector<Shot>& shots, double otherwise);

} // namespace kestrin::session
