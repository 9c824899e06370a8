#pragma once

#include <filesystem>
#include <opencv2/core/mat.hpp>
#include <string>

namespace kestrin::content {

/// The brightness of a client's JPEG, made smaller until neither side is longer than `longest`. Throws
/// UnreadablePicture, also when it has more than 32 megapixels. Thread: any.
cv::Mat decodeGray(const std::string& jpeg, int longest);

/// Likewise of a picture file of any usual kind, which its author answers for. Empty when it cannot be read.
cv::Mat readGray(const std::filesystem::path& file, int longest);

} // namespace kestrin::content
