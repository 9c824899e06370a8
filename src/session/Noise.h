#pragma once

#include "session/Geometry.h"

#include <cstdint>

namespace kestrin::session {

/// Red, green, blue in [0, 1].
using Color = Vector3;

/// A point of a picture or tile: 0..1, y down.
struct Point2 {
    float x = 0, y = 0;
};

Color mix(const Color& a, const Color& b, float share);
/// 0 below `from`, 1 above `to`, smooth between.
float ramp(float from, float to, float value);

/// Always the same number in [0, 1) for the same arguments.
float chance(std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0);
/// Smooth noise in [0, 1] that repeats with period 1 in both directions; `cellsX` by `cellsY` cells a period.
float noise(Point2 point, int cellsX, int cellsY, std::uint32_t seed);
/// Several noises, each twice as fine and half as strong as the one before; in [0, 1].
float cloud(Point2 point, int cellsX, int cellsY, int octaves, std::uint32_t seed);

} // namespace kestrin::session
