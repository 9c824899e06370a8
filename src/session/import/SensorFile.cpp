#include "session/import/SensorFile.h"

#include "session/import/ImportError.h"
#include "session/import/TextTable.h"
#include "session/recording/RecordingLimits.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cmath>

namespace kestrin::session {

namespace {

constexpr double kMost = 1e6;    // more than any metre, pixel or coefficient there is
constexpr double kSkewed = 1e-3; // what is left of a rotation that was written with few digits

bool isRotation(const Eigen::Matrix3d& matrix) {
    return (matrix * matrix.transpose() - Eigen::Matrix3d::Identity()).norm() < kSkewed &&
           matrix.determinant() > 0;
}

} // namespace

struct SensorFile::Document {
    std::string file;
    YAML::Node root;

    [[noreturn]] void fail(const YAML::Mark& mark, const std::string& message) const {
        throw ImportError(file + ":" + std::to_string(mark.line + 1) + ": " + message);
    }
    YAML::Node find(const YAML::Node& parent, const std::string& key) const {
        const YAML::Node node = parent.IsMap() ? parent[key] : YAML::Node(YAML::NodeType::Undefined);
        if (!node)
            throw ImportError(file + ": " + key + ": missing");
        return node;
    }
};

SensorFile::SensorFile(const std::filesystem::path& file)
    : m_document(std::make_unique<Document>(Document{file.string(), {}})) {
    try {
        m_document->root = YAML::Load(readText(file, kMostDescription));
    } catch (const YAML::Exception& error) {
        m_document->fail(error.mark, error.msg);
    }
}

SensorFile::~SensorFile() = default;

std::vector<double> SensorFile::numbers(const std::string& key, std::size_t least, std::size_t most) const {
    YAML::Node node = m_document->find(m_document->root, key);
    if (key == "T_BS")
        node = m_document->find(node, "data");
    std::vector<double> values;
    for (std::size_t i = 0; node.IsSequence() && i < std::min(node.size(), most + 1); ++i) {
        double value = NAN;
        if (!node[i].IsScalar() || !YAML::convert<double>::decode(node[i], value) ||
            !(std::abs(value) <= kMost))
            m_document->fail(node[i].Mark(), key + ": expected numbers");
        values.push_back(value);
    }
    if (values.size() < least || values.size() > most)
        m_document->fail(node.Mark(), key + ": expected a list of " + std::to_string(least) + " numbers");
    return values;
}

Eigen::Isometry3d SensorFile::bodyFromSensor() const {
    const std::vector<double> values = numbers("T_BS", 16, 16);
    const Eigen::Matrix4d matrix =
        Eigen::Map<const Eigen::Matrix<double, 4, 4, Eigen::RowMajor>>(values.data());
    const Eigen::Matrix3d rotation = matrix.topLeftCorner<3, 3>();
    if (!isRotation(rotation) || matrix.row(3) != Eigen::RowVector4d(0, 0, 0, 1))
        throw ImportError(m_document->file + ": T_BS: expected a rotation with a translation");
    return Eigen::Translation3d(matrix.topRightCorner<3, 1>()) * Eigen::Quaterniond(rotation).normalized();
}

Calibration SensorFile::calibration() const {
    const std::vector<double> size = numbers("resolution", 2, 2), pinhole = numbers("intrinsics", 4, 4);
    if (!std::ranges::all_of(size, [](double side) { return side >= 1 && side <= kMostSide; }))
        throw ImportError(m_document->file + ": resolution: expected 1 to " + std::to_string(kMostSide) +
                          " pixels");
    const YAML::Node model = m_document->find(m_document->root, "distortion_model");
    if (!model.IsScalar() || (model.Scalar() != "radial-tangential" && model.Scalar() != "radtan"))
        m_document->fail(model.Mark(), "distortion_model: only radial-tangential is known");
    Calibration result{int(size[0]), int(size[1]),           pinhole[0], pinhole[1], pinhole[2],
                       pinhole[3],   Lens::radialTangential, {}};
    std::ranges::copy(numbers("distortion_coefficients", 4, 5), result.bend.begin());
    if (!result.isSound())
        throw ImportError(m_document->file + ": intrinsics: expected positive focal lengths and a principal "
                                             "point in the picture");
    return result;
}

} // namespace kestrin::session
