#pragma once

#include "session/PinholeCamera.h"

#include <array>

namespace kestrin::session {

/// How a lens bends the picture, u and c being pixels and r the distance from the principal point c.
enum class Lens {
    straight,
    radialTangential, ///< k1 k2 p1 p2 k3 on coordinates divided by the focal length
    radialPixels      ///< k1 k2 on pixels: u_bent = c + (1 + k1 r^2 + k2 r^4) (u - c)
};

/// A data set's camera. Its principal point is counted from the centre of the top-left pixel, half a pixel
/// less than Kestrin counts from that pixel's corner.
struct Calibration {
    int width = 0, height = 0; ///< pixels; 0: as the first picture
    double fx = 0, fy = 0, cx = 0, cy = 0;
    Lens lens = Lens::straight;
    std::array<double, 5> bend{};

    /// Positive focal lengths and a principal point that can be meant.
    bool isSound() const;
    /// The camera of the straightened picture: the same size, focal lengths and principal point.
    CameraModel pinhole() const;
};

} // namespace kestrin::session
