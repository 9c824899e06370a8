#pragma once

#include "session/import/Calibration.h"

#include <Eigen/Geometry>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::session {

/// A `sensor.yaml` of an EuRoC folder. What is wrong with it throws ImportError with file and line.
class SensorFile {
  public:
    explicit SensorFile(const std::filesystem::path& file);
    ~SensorFile();
    SensorFile(const SensorFile&) = delete;
    SensorFile& operator=(const SensorFile&) = delete;

    /// Where the sensor sits: from its axes to those of the body (`T_BS`).
    Eigen::Isometry3d bodyFromSensor() const;
    /// Size, intrinsics and distortion of a camera.
    Calibration calibration() const;

  private:
    struct Document;
    std::vector<double> numbers(const std::string& key, std::size_t least, std::size_t most) const;

    const std::unique_ptr<Document> m_document;
};

} // namespace kestrin::session
