#pragma once

#include "session/Nv12Buffer.h"

#include <opencv2/core/mat.hpp>

#include <filesystem>

namespace kestrin::session {

/// The pixels of a picture file, red green blue, upright. Throws ImportError that names the file.
cv::Mat readPicture(const std::filesystem::path& file);
/// Writes a PNG, or a JPEG where the name ends so. Throws ImportError that names the file.
void writePicture(const std::filesystem::path& file, const cv::Mat& rgb);

Nv12Buffer toNv12(const cv::Mat& rgb);
cv::Mat toRgb(const Nv12Buffer& picture);

} // namespace kestrin::session
