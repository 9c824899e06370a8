#include "Blobs.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace kestrin::test {

namespace {

using platform::Image;
using platform::Point;

constexpr int kRim = 2; // pixels of a soft edge

cv::Mat3f colorsOf(const Image& image) {
    const cv::Mat rgba(image.pixelHeight(), image.pixelWidth(), CV_8UC4,
                       const_cast<std::uint8_t*>(image.pixels().data()));
    cv::Mat3b rgb;
    cv::cvtColor(rgba, rgb, cv::COLOR_RGBA2RGB);
    return rgb;
}

/// The connected regions in which the coverage, 0 to 1 a pixel, exceeds a half, with its centroids there,
/// soft edges included.
std::vector<Blob> findBlobs(const cv::Mat1f& coverage) {
    cv::Mat labels, centres;
    cv::Mat1i found;
    const int count = cv::connectedComponentsWithStats(coverage > 0.5, labels, found, centres, 4);
    std::vector<Blob> blobs;
    for (int i = 1; i < count; ++i) {
        const cv::Rect whole(found(i, cv::CC_STAT_LEFT) - kRim, found(i, cv::CC_STAT_TOP) - kRim,
                             found(i, cv::CC_STAT_WIDTH) + 2 * kRim, found(i, cv::CC_STAT_HEIGHT) + 2 * kRim);
        const cv::Rect seen = whole & cv::Rect({}, coverage.size());
        const cv::Moments sum = cv::moments(coverage(seen));
        blobs.push_back(
            {{seen.x + sum.m10 / sum.m00 + 0.5, seen.y + sum.m01 / sum.m00 + 0.5}, sum.m00, seen != whole});
    }
    return blobs;
}

} // namespace

double distance(const Point& a, const Point& b) { return std::hypot(a.x - b.x, a.y - b.y); }

std::vector<Blob> findDiscs(const Image& with, const Image& without, const std::array<double, 3>& color) {
    // with = (1 - coverage) * without + coverage * color, solved for coverage over the three channels.
    const cv::Mat3f shown = colorsOf(with), behind = colorsOf(without);
    const cv::Vec3f wanted{float(color[0]), float(color[1]), float(color[2])};
    cv::Mat1f coverage(shown.size());
    coverage.forEach([&](float& pixel, const int* at) {
        const cv::Vec3f whole = wanted - behind(at), part = shown(at) - behind(at);
        pixel = std::clamp(part.dot(whole) / std::max(whole.dot(whole), 1.0F), 0.0F, 1.0F);
    });
    return findBlobs(coverage);
}

std::optional<Blob> findMark(const Image& image, const Point& near, double reach) {
    const cv::Rect window = cv::Rect(cv::Point(int(near.x - reach), int(near.y - reach)),
                                     cv::Point(int(near.x + reach), int(near.y + reach))) &
                            cv::Rect(0, 0, image.pixelWidth(), image.pixelHeight());
    if (window.width < 4 || window.height < 4)
        return std::nullopt;
    cv::Mat1f luma, coverage;
    cv::cvtColor(colorsOf(image)(window), luma, cv::COLOR_RGB2GRAY);
    double darkest = 0, brightest = 0;
    cv::minMaxLoc(luma, &darkest, &brightest);
    if (brightest - darkest < 80)
        return std::nullopt;
    // Steepened, so that shading of the white and of the black counts for nothing.
    coverage = ((brightest - luma) / (brightest - darkest) - 0.2) / 0.6;
    coverage = cv::max(cv::min(coverage, 1), 0);
    std::optional<Blob> nearest;
    for (Blob blob : findBlobs(coverage)) {
        blob.centre.x += window.x;
        blob.centre.y += window.y;
        if (!blob.touchesEdge && (!nearest || distance(blob.centre, near) < distance(nearest->centre, near)))
            nearest = blob;
    }
    return nearest;
}

} // namespace kestrin::test
