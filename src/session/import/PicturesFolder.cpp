#include "session/import/Folders.h"

#include "session/Field.h"
#include "session/JsonDocument.h"
#include "session/import/Axes.h"
#include "session/import/SequenceBuilder.h"
#include "session/recording/RecordingLimits.h"

#include <algorithm>
#include <cmath>

namespace kestrin::session {

namespace fs = std::filesystem;

namespace {

constexpr double kUsualRate = 30;

std::vector<fs::path> listPictures(const fs::path& folder, std::size_t expected, const std::string& poses) {
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (!entry.path().filename().string().starts_with('.'))
            files.push_back(entry.path());
    std::ranges::sort(files);
    if (files.size() != expected)
        throw ImportError(folder.string() + ": has " + std::to_string(files.size()) + " pictures, but " +
                          poses + " has " + std::to_string(expected) + " poses");
    return files;
}

// The general form: intrinsics.json beside poses with times.

struct Description {
    Calibration camera;
    WorldUp up = WorldUp::y;
    CameraAxes axes = CameraAxes::upBackward;
};

/// One of two words; the first is meant when there is none.
bool isSecond(const Field& field, const char* key, const std::string& first, const std::string& second) {
    const auto found = field.find(key);
    if (!found || found->text() == first)
        return false;
    if (found->text() != second)
        found->fail("expected \"" + first + "\" or \"" + second + "\"");
    return true;
}

Description describe(const Field& field) {
    field.allowKeys({"width", "height", "fx", "fy", "cx", "cy", "distortion", "pixels", "camera", "world"});
    Description result;
    Calibration& camera = result.camera;
    camera.width = int(field["width"].number(1, kMostSide));
    camera.height = int(field["height"].number(1, kMostSide));
    const double shift = isSecond(field, "pixels", "corner", "centre") ? 0 : 0.5;
    camera.fx = field["fx"].number(1, 1e6);
    camera.fy = field["fy"].number(1, 1e6);
    camera.cx = field["cx"].number(-kMostSide, 2 * kMostSide) - shift;
    camera.cy = field["cy"].number(-kMostSide, 2 * kMostSide) - shift;
    if (const auto bend = field.find("distortion")) {
        const auto values = bend->numbers(5, -1e6, 1e6, "expected five numbers k1 k2 p1 p2 k3");
        std::ranges::copy(values, camera.bend.begin());
        camera.lens = Lens::radialTangential;
    }
    if (isSecond(field, "camera", "y-up", "y-down"))
        result.axes = CameraAxes::downForward;
    if (isSecond(field, "world", "y-up", "z-up"))
        result.up = WorldUp::z;
    return result;
}

Description readDescription(const fs::path& file) {
    const auto document = parseDocument(readText(file, kMostDescription));
    if (const auto* error = std::get_if<std::string>(&document))
        throw ImportError(file.string() + ": " + *error);
    try {
        return describe(Field(std::get<boost::json::value>(document)));
    } catch (const FieldError& error) {
        throw ImportError(file.string() + ": " + error.what());
    }
}

Sequence readGeneral(const fs::path& folder) {
    const Description description = readDescription(folder / "intrinsics.json");
    const Trajectory path = Trajectory::readTum(folder / "poses.txt");
    const auto files = listPictures(folder / "images", path.poses().size(), "poses.txt");
    Sequence sequence;
    sequence.camera = description.camera;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const StampedPose& pose = path.poses()[i];
        sequence.shots.push_back(
            {pose.stamp, files[i], kestrinPose(pose.transform(), description.up, description.axes), {}});
    }
    return sequence;
}

// The form with K.txt: the camera looks down on a plane z = 0, poses lead from there into the camera.

Calibration readMatrix(const fs::path& folder) {
    const TextTable table(folder / "K.txt");
    for (const TableRow& row : table.rows())
        row.needColumns(3);
    if (table.rows().size() != 3)
        table.rows().back().fail("expected three lines of three numbers");
    const TableRow &x = table.rows()[0], &y = table.rows()[1];
    Calibration camera{0, 0, x.number(0), y.number(1), x.number(2), y.number(2), Lens::straight, {}};
    if (!camera.isSound() || x.number(1) != 0 || y.number(0) != 0)
        x.fail("expected fx 0 cx, then 0 fy cy, then 0 0 1");
    if (fs::exists(folder / "D.txt")) {
        const TextTable bend(folder / "D.txt");
        bend.rows().front().needColumns(2);
        camera.lens = Lens::radialPixels;
        camera.bend = {bend.rows().front().number(0), bend.rows().front().number(1)};
    }
    return camera;
}

Eigen::Isometry3d worldFromCamera(const TableRow& row) {
    row.needColumns(6);
    const Eigen::Vector3d turn(row.number(0), row.number(1), row.number(2));
    const Eigen::Translation3d shift(row.number(3), row.number(4), row.number(5));
    const double angle = turn.norm();
    const Eigen::AngleAxisd rotation(angle,
                                     angle > 0 ? Eigen::Vector3d(turn / angle) : Eigen::Vector3d::UnitX());
    return (shift * rotation).inverse();
}

Sequence readWithMatrix(const fs::path& folder, double rate) {
    Sequence sequence;
    sequence.camera = readMatrix(folder);
    const TextTable table(folder / "poses.txt");
    const auto files = listPictures(folder / "images", table.rows().size(), "poses.txt");
    std::vector<Eigen::Isometry3d> poses;
    for (const TableRow& row : table.rows())
        poses.push_back(worldFromCamera(row));
    const auto above =
        std::ranges::count_if(poses, [](const auto& pose) { return pose.translation().z() > 0; });
    const WorldUp up = 2 * std::size_t(above) >= poses.size() ? WorldUp::z : WorldUp::minusZ;
    for (std::size_t i = 0; i < files.size(); ++i)
        sequence.shots.push_back({Stamp(std::llround(1e9 * double(i) / rate)),
                                  files[i],
                                  kestrinPose(poses[i], up, CameraAxes::downForward),
                                  {}});
    return sequence;
}

} // namespace

Sequence readPicturesFolder(const fs::path& folder, const ImportOptions& options) {
    Sequence sequence = fs::exists(folder / "intrinsics.json")
                            ? readGeneral(folder)
                            : readWithMatrix(folder, options.rate.value_or(kUsualRate));
    keepRange(sequence.shots, options.pictures, folder);
    return sequence;
}

} // namespace kestrin::session
