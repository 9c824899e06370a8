#include "session/Noise.h"

#include <algorithm>

namespace kestrin::session {

Color mix(const Color& a, const Color& b, float share) { return a + share * (b - a); }

float ramp(float from, float to, float value) {
    const float t = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

float chance(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    std::uint32_t h = a * 0x9E3779B1U ^ b * 0x85EBCA77U ^ c * 0xC2B2AE3DU;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    h ^= h >> 15;
    return float(h >> 8) / float(1U << 24U);
}

namespace {

/// The cells on both sides of a coordinate, and how far it is from the first to the second.
struct Span {
    std::uint32_t first, second;
    float share;

    Span(float coordinate, int cells) {
        const float scaled = coordinate * float(cells);
        const int whole = int(scaled) - (scaled < 0 ? 1 : 0);
        const int wrapped = whole % cells;
        first = std::uint32_t(wrapped < 0 ? wrapped + cells : wrapped);
        second = first + 1 == std::uint32_t(cells) ? 0 : first + 1;
        const float t = scaled - float(whole);
        share = t * t * (3 - 2 * t);
    }
};

} // namespace

float noise(Point2 point, int cellsX, int cellsY, std::uint32_t seed) {
    const Span x(point.x, cellsX), y(point.y, cellsY);
    const auto across = [&](std::uint32_t row) {
        const float left = chance(x.first, row, seed);
        return left + x.share * (chance(x.second, row, seed) - left);
    };
    const float upper = across(y.first);
    return upper + y.share * (across(y.second) - upper);
}

float cloud(Point2 point, int cellsX, int cellsY, int octaves, std::uint32_t seed) {
    float sum = 0, strength = 0.5F, total = 0;
    for (int i = 0; i < octaves; ++i) {
        sum += strength * noise(point, cellsX << i, cellsY << i, seed + std::uint32_t(i));
        total += strength;
        strength /= 2;
    }
    return sum / total;
}

} // namespace kestrin::session
