#pragma once

#include "session/import/Calibration.h"

#include <opencv2/core/mat.hpp>

namespace kestrin::session {

/// Straightens the pictures of one camera. Where the lens saw nothing the result is black. Thread: any.
class Undistorter {
  public:
    explicit Undistorter(const Calibration& calibration);
    /// A picture of the calibration's size.
    cv::Mat operator()(const cv::Mat& picture) const;

  private:
    cv::Mat m_whole, m_fraction; ///< where a pixel comes from; empty when nothing is bent
};

} // namespace kestrin::session
