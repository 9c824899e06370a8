#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>
#include <vector>

namespace kestrin::content {

/// The points of a picture by which it is recognised.
struct Features {
    cv::Size size;
    std::vector<cv::Point2f> points;
    cv::Mat descriptors; // a row for each point
};

/// At most `most` features of a picture's brightness. Thread: any.
Features featuresOf(const cv::Mat& gray, int most);

/// How many features of a flat picture are seen in a view, all where one perspective puts them; 0 when they
/// do not make up a plausible sight of it. Thread: any.
int commonFeatures(const Features& picture, const Features& view);

} // namespace kestrin::content
