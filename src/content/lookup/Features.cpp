#include "content/lookup/Features.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>

namespace kestrin::content {
namespace {

constexpr float kDistinct = 0.75f;      // a match is this much nearer than the second best
constexpr int kFewest = 15;             // fewer agree by chance
constexpr double kTolerance = 4;        // pixels off the place where the perspective puts a point
constexpr double kSmallestShare = 0.01; // of the view that the picture takes up

/// Where the picture's corners are in the view; false when it would be seen mirrored, folded or as a speck.
bool isPlausible(const cv::Mat& perspective, const Features& picture, const Features& view) {
    const auto width = float(picture.size.width), height = float(picture.size.height);
    std::vector<cv::Point2f> corners{{0, 0}, {width, 0}, {width, height}, {0, height}};
    cv::perspectiveTransform(corners, corners, perspective);
    return cv::isContourConvex(corners) &&
           cv::contourArea(corners, true) > kSmallestShare * view.size.area(); // signed: clockwise as it was
}

} // namespace

Features featuresOf(const cv::Mat& gray, int most) {
    std::vector<cv::KeyPoint> points;
    Features features;
    features.size = gray.size();
    cv::SIFT::create(most)->detectAndCompute(gray, {}, points, features.descriptors);
    cv::KeyPoint::convert(points, features.points);
    return features;
}

int commonFeatures(const Features& picture, const Features& view) {
    if (picture.descriptors.rows < kFewest || view.descriptors.rows < kFewest)
        return 0;
    std::vector<std::vector<cv::DMatch>> nearest;
    cv::BFMatcher(cv::NORM_L2).knnMatch(picture.descriptors, view.descriptors, nearest, 2);
    std::vector<cv::Point2f> from, to;
    for (const auto& match : nearest)
        if (match.size() == 2 && match[0].distance < kDistinct * match[1].distance) {
            from.push_back(picture.points[std::size_t(match[0].queryIdx)]);
            to.push_back(view.points[std::size_t(match[0].trainIdx)]);
        }
    if (int(from.size()) < kFewest)
        return 0;
    cv::Mat agrees;
    const cv::Mat perspective = cv::findHomography(from, to, cv::RANSAC, kTolerance, agrees);
    const int common = perspective.empty() ? 0 : cv::countNonZero(agrees);
    return common >= kFewest && isPlausible(perspective, picture, view) ? common : 0;
}

} // namespace kestrin::content
