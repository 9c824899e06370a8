#include "session/import/Folders.h"

#include "session/import/SensorFile.h"
#include "session/import/SequenceBuilder.h"

#include <algorithm>

namespace kestrin::session {

namespace fs = std::filesystem;

namespace {

/// The first `groundtruth_tum*.txt` by name.
std::optional<fs::path> findTumFile(const fs::path& folder) {
    std::vector<fs::path> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (entry.path().filename().string().starts_with("groundtruth_tum") &&
            entry.path().extension() == ".txt")
            found.push_back(entry.path());
    const auto first = std::ranges::min_element(found);
    return first == found.end() ? std::nullopt : std::optional(*first);
}

/// The sensor's place on the body; a sensor without a description sits at the body's origin.
Eigen::Isometry3d placeOf(const fs::path& sensorFolder) {
    const fs::path file = sensorFolder / "sensor.yaml";
    return fs::exists(file) ? SensorFile(file).bodyFromSensor() : Eigen::Isometry3d::Identity();
}

/// A path through the world, and the place on the body of what went along it.
struct Truth {
    Trajectory path;
    Eigen::Isometry3d bodyFromCarried;
};

Truth readTruth(const fs::path& folder) {
    const fs::path own = folder / "state_groundtruth_estimate0";
    if (fs::exists(own / "data.csv"))
        return {Trajectory::readEuroc(own / "data.csv"), placeOf(own)};
    if (const auto tum = findTumFile(folder))
        return {Trajectory::readTum(*tum), placeOf(folder / "imu0")};
    throw ImportError(folder.string() +
                      ": has no ground truth: neither state_groundtruth_estimate0/data.csv nor "
                      "groundtruth_tum*.txt");
}

std::vector<StampedImu> readImu(const fs::path& file) {
    std::vector<StampedImu> readings;
    if (!fs::exists(file))
        return readings;
    const TextTable table(file);
    for (const TableRow& row : table.rows()) {
        row.needColumns(7);
        const Stamp stamp = row.nanoseconds(0);
        if (!readings.empty() && stamp <= readings.back().stamp)
            row.fail("the time does not go up");
        readings.push_back({stamp,
                            {row.number(1), row.number(2), row.number(3)},
                            {row.number(4), row.number(5), row.number(6)}});
    }
    return readings;
}

} // namespace

Sequence readEurocFolder(const fs::path& given, const ImportOptions& options) {
    const fs::path folder = fs::exists(given / "mav0") ? given / "mav0" : given;
    const SensorFile sensor(folder / "cam0" / "sensor.yaml");
    const Eigen::Isometry3d bodyFromCamera = sensor.bodyFromSensor();
    Sequence sequence;
    sequence.camera = sensor.calibration();
    const auto pictures = readPictureList(folder / "cam0" / "data.csv", folder / "cam0" / "data",
                                          TimeUnit::nanoseconds, options.pictures);
    const Truth truth = readTruth(folder);
    placeShots(sequence, pictures, truth.path, truth.bodyFromCarried.inverse() * bodyFromCamera);
    if (!sequence.shots.empty())
        placeImu(sequence, readImu(folder / "imu0" / "data.csv"),
                 bodyFromCamera.linear().transpose() * placeOf(folder / "imu0").linear());
    return sequence;
}

} // namespace kestrin::session
