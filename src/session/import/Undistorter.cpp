#include "session/import/Undistorter.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

namespace kestrin::session {

namespace {

/// Where each pixel of the straight picture is found in the bent one.
cv::Mat pixelMap(const Calibration& c) {
    cv::Mat map(c.height, c.width, CV_32FC2);
    for (int row = 0; row < c.height; ++row)
        for (int column = 0; column < c.width; ++column) {
            const double x = column - c.cx, y = row - c.cy, r2 = x * x + y * y;
            const double factor = 1 + c.bend[0] * r2 + c.bend[1] * r2 * r2;
            map.at<cv::Vec2f>(row, column) = {float(c.cx + factor * x), float(c.cy + factor * y)};
        }
    return map;
}

cv::Mat lensMap(const Calibration& c) {
    const cv::Matx33d camera(c.fx, 0, c.cx, 0, c.fy, c.cy, 0, 0, 1);
    cv::Mat map, none;
    cv::initUndistortRectifyMap(camera, c.bend, cv::noArray(), camera, {c.width, c.height}, CV_32FC2, map,
                                none);
    return map;
}

} // namespace

Undistorter::Undistorter(const Calibration& calibration) {
    if (calibration.lens != Lens::straight)
        cv::convertMaps(calibration.lens == Lens::radialPixels ? pixelMap(calibration) : lensMap(calibration),
                        cv::noArray(), m_whole, m_fraction, CV_16SC2);
}

cv::Mat Undistorter::operator()(const cv::Mat& picture) const {
    if (m_whole.empty())
        return picture;
    cv::Mat straight;
    cv::remap(picture, straight, m_whole, m_fraction, cv::INTER_LINEAR, cv::BORDER_CONSTANT);
    return straight;
}

} // namespace kestrin::session
