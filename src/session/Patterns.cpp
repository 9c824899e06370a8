#include "session/Patterns.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrin::session {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

/// 0 in the middle of a cell to 1 at its border.
float border(float coordinate) { return std::abs(2 * (coordinate - std::floor(coordinate)) - 1); }

/// Fibres along x: 0 dark to 1 light.
float grain(Point2 point, std::uint32_t seed) {
    const float bend = noise(point, 3, 4, seed);
    const float rings = 0.5F + 0.5F * std::sin(2 * kPi * (point.y * 9 + 1.3F * bend));
    const float fibres = cloud(point, 4, 90, 2, seed + 7);
    return 0.45F * rings + 0.55F * fibres;
}

} // namespace

Color plain(Point2) { return {1, 1, 1}; }

Color plaster(Point2 point) {
    const float bumps = cloud(point, 12, 12, 4, 11) - 0.5F;
    const float strokes = noise({point.x, point.y}, 5, 40, 23) - 0.5F;
    const float shade = 0.93F + 0.07F * bumps + 0.025F * strokes;
    return {shade, shade, shade};
}

Color planks(Point2 point) {
    constexpr float kRows = 10;
    const float row = std::floor(point.y * kRows);
    const float offset = chance(std::uint32_t(row), 5);
    const float along = point.x + offset;
    const std::uint32_t plank = std::uint32_t(row) * 2 + (along >= 1 ? 1 : 0);

    const float tone = 0.82F + 0.26F * chance(plank, 9);
    const float fibre = grain({point.x, point.y + chance(plank, 3)}, 41);
    const Color wood = mix({0.52F, 0.36F, 0.22F}, {0.80F, 0.62F, 0.42F}, 0.25F + 0.6F * fibre);
    const float gap = std::max(ramp(0.965F, 1, border(point.y * kRows)), ramp(0.997F, 1, border(along)));
    return (tone * (1 - 0.6F * gap)) * wood;
}

Color oak(Point2 point) {
    const float fibre = grain(point, 77);
    const float pores = ramp(0.72F, 0.86F, noise(point, 24, 220, 5));
    const Color wood = mix({0.66F, 0.46F, 0.28F}, {0.80F, 0.61F, 0.41F}, 0.2F + 0.7F * fibre);
    return (1 - 0.18F * pores) * wood;
}

Color tiles(Point2 point) {
    constexpr float kCells = 2;
    const auto cell = std::uint32_t(std::floor(point.x * kCells) + kCells * std::floor(point.y * kCells));
    const float glaze = 0.82F + 0.08F * chance(cell, 31) + 0.06F * (cloud(point, 6, 6, 3, 17) - 0.5F);
    const float joint = std::max(border(point.x * kCells), border(point.y * kCells));
    return mix({glaze, glaze, 0.97F * glaze}, {0.62F, 0.61F, 0.58F}, ramp(0.965F, 0.985F, joint));
}

Color carpet(Point2 point) {
    const float tufts = 0.6F * noise(point, 96, 96, 3) + 0.4F * cloud(point, 10, 10, 3, 8);
    const float shade = 0.72F + 0.4F * (tufts - 0.5F);
    return {shade, shade, shade};
}

Color fabric(Point2 point) {
    const float over = std::sin(2 * kPi * point.x * 32), under = std::sin(2 * kPi * point.y * 32);
    const float weave = 0.5F + 0.25F * (over > under ? over : under);
    const float shade = 0.72F + 0.28F * weave + 0.12F * (cloud(point, 8, 8, 3, 2) - 0.5F);
    return {shade, shade, shade};
}

Color checker(Point2 point) {
    const bool dark = (point.x < 0.5F) != (point.y < 0.5F);
    return dark ? Color{0.15F, 0.15F, 0.16F} : Color{0.9F, 0.9F, 0.88F};
}

} // namespace kestrin::session
