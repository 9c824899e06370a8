#include "session/import/PicturesFolderWriter.h"

#include "session/Geometry.h"
#include "session/import/ImportError.h"
#include "session/import/Picture.h"

#include <array>
#include <cstdio>
#include <locale>

namespace kestrin::session {

namespace fs = std::filesystem;

namespace {

/// A point stays a point whatever the locale.
std::ofstream openText(const fs::path& file) {
    std::ofstream stream(file);
    stream.imbue(std::locale::classic());
    return stream;
}

void writeIntrinsics(const fs::path& file, const CameraModel& camera) {
    std::ofstream out = openText(file);
    const platform::Intrinsics& k = camera.intrinsics;
    out.precision(17);
    out << "{\n  \"width\": " << camera.width << ", \"height\": " << camera.height << ",\n  \"fx\": " << k.fx
        << ", \"fy\": " << k.fy << ", \"cx\": " << k.cx << ", \"cy\": " << k.cy
        << ",\n  \"pixels\": \"corner\", \"camera\": \"y-up\", \"world\": \"y-up\"\n}\n";
    if (!out.flush())
        throw ImportError(file.string() + ": cannot be written");
}

std::string pictureName(std::size_t index, const char* ending) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "%06zu.%s", index, ending);
    return name.data();
}

} // namespace

PicturesFolderWriter::PicturesFolderWriter(const fs::path& folder, const CameraModel& camera, Format format)
    : m_folder(folder), m_format(format), m_poses(openText(folder / "poses.txt")) {
    std::error_code error;
    fs::create_directory(folder / "images", error);
    writeIntrinsics(folder / "intrinsics.json", camera);
    m_poses << "# time [s], position [m], rotation x y z w: camera to world\n" << std::fixed;
}

void PicturesFolderWriter::add(const RecordedFrame& frame, const Nv12Buffer& picture) {
    const Vector3 place = position(frame.frame.sensorPose);
    const Quaternion turn = rotationOf(frame.frame.sensorPose);
    m_poses.precision(9);
    m_poses << frame.frame.time;
    for (const float value : {place.x, place.y, place.z, turn.x, turn.y, turn.z, turn.w})
        m_poses << ' ' << value;
    m_poses << '\n';
    const char* ending = m_format == Format::png ? "png" : "jpg";
    writePicture(m_folder / "images" / pictureName(m_count++, ending), toRgb(picture));
}

void PicturesFolderWriter::finish() {
    if (!m_poses.flush())
        throw ImportError((m_folder / "poses.txt").string() + ": cannot be written");
}

} // namespace kestrin::session
