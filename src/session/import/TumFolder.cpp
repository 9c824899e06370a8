#include "session/import/Folders.h"

#include "session/import/SequenceBuilder.h"

#include <array>

namespace kestrin::session {

namespace fs = std::filesystem;

namespace {

/// The calibrations that belong to the data set, by the mark in a folder's name.
struct Known {
    std::string_view mark;
    std::string_view numbers;
};
constexpr std::array kKnown{
    Known{"freiburg1", "517.3 516.5 318.6 255.3 0.2624 -0.9531 -0.0054 0.0026 1.1633"},
    Known{"freiburg2", "520.9 521.0 325.1 249.7 0.2312 -0.7849 -0.0033 -0.0001 0.9172"},
    Known{"freiburg3", "535.4 539.2 320.1 247.6"}};

Calibration fromRow(const TableRow& row) {
    if (row.size() != 4 && row.size() != 8 && row.size() != 9)
        row.fail("expected fx fy cx cy, or these and k1 k2 p1 p2, or these and k3");
    Calibration camera{0, 0, row.number(0), row.number(1), row.number(2), row.number(3), Lens::straight, {}};
    for (std::size_t i = 4; i < row.size(); ++i) {
        camera.lens = Lens::radialTangential;
        camera.bend[i - 4] = row.number(i);
    }
    if (!camera.isSound())
        row.fail("expected positive focal lengths and a principal point in the picture");
    return camera;
}

Calibration readCalibration(const fs::path& folder, const ImportOptions& options) {
    if (options.calibration)
        return fromRow(TextTable("--intrinsics", *options.calibration).rows().front());
    for (const char* name : {"camera.txt", "calibration.txt"})
        if (fs::exists(folder / name))
            return fromRow(TextTable(folder / name).rows().front());
    const std::string name = fs::weakly_canonical(folder).filename().string();
    for (const Known& known : kKnown)
        if (name.find(known.mark) != name.npos)
            return fromRow(TextTable(std::string(known.mark), std::string(known.numbers)).rows().front());
    throw ImportError(folder.string() + ": which camera? Name it with --intrinsics, or write a camera.txt");
}

} // namespace

Sequence readTumFolder(const fs::path& folder, const ImportOptions& options) {
    Sequence sequence;
    sequence.camera = readCalibration(folder, options);
    placeShots(sequence, readPictureList(folder / "rgb.txt", folder, TimeUnit::seconds, options.pictures),
               Trajectory::readTum(folder / "groundtruth.txt"), Eigen::Isometry3d::Identity());
    return sequence;
}

} // namespace kestrin::session
