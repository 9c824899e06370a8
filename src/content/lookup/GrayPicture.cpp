#include "content/lookup/GrayPicture.h"

#include "content/GPointer.h"
#include "content/PictureLookup.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <turbojpeg.h>

#include <algorithm>
#include <cstdint>

namespace kestrin::content {
namespace {

constexpr std::int64_t kMostPixels = 32 << 20;
constexpr const char* kUnreadable = "the picture is not a JPEG that can be read";

cv::Mat shrunk(const cv::Mat& picture, int longest) {
    const double scale = double(longest) / std::max({picture.cols, picture.rows, 1});
    if (picture.empty() || scale >= 1)
        return picture;
    cv::Mat small;
    const cv::Size size(std::max(1, cvRound(picture.cols * scale)),
                        std::max(1, cvRound(picture.rows * scale)));
    cv::resize(picture, small, size, 0, 0, cv::INTER_AREA);
    return small;
}

} // namespace

cv::Mat decodeGray(const std::string& jpeg, int longest) {
    const GHandle<void, tjDestroy> decoder(tjInitDecompress());
    const auto* const bytes = reinterpret_cast<const unsigned char*>(jpeg.data());
    int width = 0, height = 0, subsampling = 0, space = 0;
    if (tjDecompressHeader3(decoder.get(), bytes, jpeg.size(), &width, &height, &subsampling, &space) != 0 ||
        width <= 0 || height <= 0 || std::int64_t(width) * height > kMostPixels)
        throw UnreadablePicture(kUnreadable);
    cv::Mat picture(height, width, CV_8UC1, cv::Scalar(0));
    if (tjDecompress2(decoder.get(), bytes, jpeg.size(), picture.data, width, int(picture.step), height,
                      TJPF_GRAY, 0) != 0)
        throw UnreadablePicture(kUnreadable);
    return shrunk(picture, longest);
}

cv::Mat readGray(const std::filesystem::path& file, int longest) {
    return shrunk(cv::imread(file.string(), cv::IMREAD_GRAYSCALE), longest);
}

} // namespace kestrin::content
