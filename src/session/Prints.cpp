#include "session/Prints.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrin::session {

namespace {

/// How much of a pixel lies inside a shape: `distance` is negative inside, in picture heights.
float inside(float distance) {
    constexpr float kPixels = 450;
    return std::clamp(0.5F - distance * kPixels, 0.0F, 1.0F);
}

float disc(Point2 point, Point2 center, float radius) {
    return inside(std::hypot(point.x - center.x, point.y - center.y) - radius);
}

float rectangle(Point2 point, Point2 center, Point2 half) {
    return inside(std::max(std::abs(point.x - center.x) - half.x, std::abs(point.y - center.y) - half.y));
}

/// Stands on `foot`; `lean` moves the top sideways.
float triangle(Point2 point, Point2 foot, float halfWidth, float height, float lean = 0) {
    const float up = (foot.y - point.y) / height;
    const float middle = foot.x + lean * up;
    return inside(std::max(std::abs(point.x - middle) - halfWidth * (1 - up), point.y - foot.y));
}

/// A ridge of hills, between `base` and `base` + `height` above the bottom of the picture.
struct Ridge {
    float base, height;
    int cells;
    std::uint32_t seed;

    /// How far a point is below the ridge; negative above it.
    float below(Point2 unit) const {
        const float up = 1 - unit.y;
        if (up > base + height + 0.01F)
            return base + height - up;
        return base + height * cloud({unit.x, 0.37F}, cells, 1, 5, seed) - up;
    }
};

Color framed(const Color& color, Point2 point, float aspect, const Color& paper) {
    const float edge = std::min(std::min(point.x, aspect - point.x), std::min(point.y, 1 - point.y));
    return mix(paper, color, inside(0.035F - edge));
}

/// A row of fir trees.
struct Firs {
    float ground, size, spacing;
    std::uint32_t seed;
    Color green;

    Color over(Color color, Point2 point) const {
        if (1 - point.y > ground + 1.3F * size)
            return color;
        const int nearest = int(point.x / spacing);
        for (int i = std::max(nearest - 2, 0); i <= nearest + 2; ++i)
            color = mix(color, (0.85F + 0.3F * chance(std::uint32_t(i), seed, 3)) * green,
                        tree(point, std::uint32_t(i)));
        return color;
    }

    float tree(Point2 point, std::uint32_t index) const {
        const float height = size * (0.6F + 0.7F * chance(index, seed, 1));
        const Point2 foot{(float(index) + chance(index, seed)) * spacing,
                          1 - ground + 0.02F * chance(index, seed, 2)};
        float covered = rectangle(point, foot, {0.04F * height, 0.06F * height});
        for (const float tier : {0.0F, 1.0F, 2.0F})
            covered = std::max(covered, triangle(point, {foot.x, foot.y - (0.05F + 0.25F * tier) * height},
                                                 (0.24F - 0.05F * tier) * height, 0.45F * height));
        return covered;
    }
};

Color sailboat(Color color, Point2 point, Point2 at, float size, const Color& sail) {
    const Point2 deck{at.x, at.y};
    color = mix(
        color, {0.95F, 0.94F, 0.90F},
        triangle(point, {at.x + 0.05F * size, at.y - 0.08F * size}, 0.22F * size, 0.9F * size, 0.2F * size));
    color = mix(
        color, sail,
        triangle(point, {at.x - 0.2F * size, at.y - 0.08F * size}, 0.14F * size, 0.7F * size, -0.12F * size));
    return mix(color, {0.35F, 0.18F, 0.14F}, rectangle(point, deck, {0.36F * size, 0.05F * size}));
}

Color houses(Color color, Point2 point, float shore, float aspect) {
    constexpr int kCount = 11;
    constexpr std::array kWalls{Color{0.85F, 0.45F, 0.33F}, Color{0.93F, 0.78F, 0.45F},
                                Color{0.55F, 0.70F, 0.72F}, Color{0.90F, 0.87F, 0.80F},
                                Color{0.68F, 0.33F, 0.36F}};
    const float width = aspect / kCount;
    const auto house = std::uint32_t(std::clamp(point.x / width, 0.0F, float(kCount - 1)));
    const float height = 0.16F + 0.14F * chance(house, 61);
    const float middle = (float(house) + 0.5F) * width, top = shore - height;
    const Color wall = kWalls[std::size_t(chance(house, 62) * 5)];
    color = mix(color, {0.45F, 0.24F, 0.20F}, triangle(point, {middle, top}, 0.52F * width, 0.09F));
    color = mix(color, wall, rectangle(point, {middle, shore - height / 2}, {0.49F * width, height / 2}));
    for (int i = 0; i < 6; ++i) {
        const Point2 window{middle + (float(i % 2) - 0.5F) * 0.46F * width,
                            top + 0.045F + 0.075F * float(i / 2)};
        if (window.y + 0.03F < shore)
            color = mix(color,
                        chance(house, 63, std::uint32_t(i)) > 0.3F ? Color{0.16F, 0.20F, 0.28F}
                                                                   : Color{1, 0.9F, 0.6F},
                        rectangle(point, window, {0.13F * width, 0.022F}));
    }
    return color;
}

} // namespace

Color rug(Point2 point) {
    constexpr float kAspect = 4.0F / 3;
    const Color cream{0.86F, 0.80F, 0.69F}, blue{0.23F, 0.33F, 0.43F}, rust{0.64F, 0.33F, 0.24F};
    const float x = std::abs(point.x - 0.5F) * kAspect, y = std::abs(point.y - 0.5F);
    const float edge = std::min(0.5F * kAspect - x, 0.5F - y);
    const float lozenge = x / kAspect + y;

    Color color = blue;
    if (edge < 0.13F) {
        const float zigzag = std::abs(std::fmod((edge == 0.5F - y ? x : y) * 14, 1.0F) - 0.5F);
        color =
            edge < 0.02F || edge > 0.115F ? cream : (std::abs(edge - 0.067F) < 0.05F * zigzag ? cream : rust);
    } else if (lozenge < 0.34F) {
        const float ring = std::fmod(lozenge * 18, 2.0F);
        color = ring < 0.35F ? cream : (lozenge < 0.12F || lozenge > 0.23F ? rust : blue);
    } else {
        const float flowers = std::hypot(std::fmod(x * 12, 1.0F) - 0.5F, std::fmod(y * 12, 1.0F) - 0.5F);
        color = flowers < 0.17F ? cream : (flowers < 0.27F ? rust : blue);
    }
    const float pile = 0.85F + 0.3F * noise(point, 220, 165, 19) * (0.7F + 0.6F * noise(point, 9, 7, 4));
    return pile * color;
}

Color books(Point2 point) {
    constexpr int kCount = 26;
    constexpr std::array kCloth{Color{0.50F, 0.18F, 0.16F}, Color{0.16F, 0.27F, 0.38F},
                                Color{0.80F, 0.72F, 0.56F}, Color{0.22F, 0.34F, 0.26F},
                                Color{0.70F, 0.48F, 0.22F}, Color{0.30F, 0.28F, 0.30F}};
    const float place = point.x * kCount + 0.45F * std::sin(point.x * 41);
    const auto book = std::uint32_t(std::max(place, 0.0F));
    const float across = place - std::floor(place);
    const float top = 0.08F + 0.3F * chance(book, 71);
    if (point.y < top)
        return {0.10F, 0.08F, 0.07F};
    const Color cloth = kCloth[std::size_t(chance(book, 72) * 6)];
    const float round = 1 - 0.55F * std::pow(std::abs(2 * across - 1), 4.0F);
    const float label = 0.25F + 0.3F * chance(book, 73);
    const bool gold = std::abs(point.y - top - 0.09F) < 0.012F || std::abs(point.y - 0.9F) < 0.012F;
    const bool title = std::abs(point.y - top - label) < 0.09F && std::abs(across - 0.5F) < 0.22F;
    const Color spine = gold ? Color{0.86F, 0.74F, 0.45F} : (title ? Color{0.9F, 0.86F, 0.76F} : cloth);
    return round * spine;
}

Color view(Point2 point) {
    const float puffs = ramp(0.48F, 0.75F, cloud({point.x, point.y * 1.6F}, 3, 4, 4, 51));
    Color color = mix({0.55F, 0.76F, 0.96F}, {0.90F, 0.95F, 0.99F}, ramp(0, 0.7F, point.y));
    color = mix(color, {1, 1, 1}, 0.85F * puffs * (1 - ramp(0.4F, 0.65F, point.y)));
    const float leaves = 0.9F + 0.2F * noise(point, 70, 70, 6);
    const std::array layers{Color{0.68F, 0.80F, 0.84F}, Color{0.56F, 0.72F, 0.60F},
                            Color{0.46F, 0.64F, 0.40F}};
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const Ridge ridge{0.30F - 0.10F * float(i), 0.18F, 3 + int(i), 80 + std::uint32_t(i)};
        color = mix(color, leaves * layers[i], inside(-ridge.below(point)));
    }
    return color;
}

Color poster(Point2 unit) {
    constexpr float kAspect = 0.75F;
    const Point2 point{unit.x * kAspect, unit.y};
    Color color = mix({0.13F, 0.32F, 0.44F}, {0.98F, 0.78F, 0.56F}, ramp(0.02F, 0.55F, point.y));
    color = mix(color, {1, 0.93F, 0.78F}, disc(point, {0.52F, 0.25F}, 0.085F));
    for (std::uint32_t i = 0; i < 24 && point.y < 0.25F; ++i) {
        const Point2 star{chance(i, 90) * kAspect, 0.04F + 0.2F * chance(i, 91)};
        color = mix(color, {1, 0.97F, 0.9F}, disc(point, star, 0.002F + 0.003F * chance(i, 92)));
    }
    const std::array layers{Color{0.62F, 0.55F, 0.62F}, Color{0.40F, 0.42F, 0.54F},
                            Color{0.24F, 0.32F, 0.42F}, Color{0.13F, 0.24F, 0.28F}};
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const float depth = float(i);
        const Ridge ridge{0.50F - 0.13F * depth, 0.26F - 0.03F * depth, 3 + int(i),
                          21 + 5 * std::uint32_t(i)};
        const float below = ridge.below(unit);
        const bool snow =
            i < 2 && below < 0.06F && below < 0.05F * cloud(unit, 22, 22, 2, 44 + std::uint32_t(i)) + 0.01F;
        color = mix(color, snow ? Color{0.97F, 0.95F, 0.95F} : layers[i], inside(-below));
    }
    color = Firs{0.17F, 0.13F, 0.047F, 7, {0.09F, 0.20F, 0.21F}}.over(color, point);
    color = mix(color, {0.10F, 0.33F, 0.38F}, inside(0.86F - point.y));
    if (point.y > 0.865F)
        color = mix(color, {0.93F, 0.70F, 0.52F}, 0.8F * ramp(0.66F, 0.72F, noise(unit, 14, 110, 13)));
    color = Firs{0.035F, 0.2F, 0.1F, 31, {0.05F, 0.12F, 0.13F}}.over(color, point);
    return framed(color, point, kAspect, {0.96F, 0.93F, 0.86F});
}

Color postcard(Point2 unit) {
    constexpr float kAspect = 1.5F, kShore = 0.52F;
    const Point2 point{unit.x * kAspect, unit.y};
    Color color = mix({0.42F, 0.68F, 0.86F}, {0.95F, 0.90F, 0.78F}, ramp(0, kShore, point.y));
    if (point.y < kShore) {
        const float leaves = 0.85F + 0.3F * noise(unit, 60, 60, 2);
        color = mix(color, {1, 1, 1}, 0.9F * ramp(0.55F, 0.8F, cloud({unit.x, 2 * unit.y}, 4, 6, 4, 33)));
        color =
            mix(color, leaves * Color{0.40F, 0.55F, 0.42F}, inside(-Ridge{0.60F, 0.16F, 4, 57}.below(unit)));
        color = houses(color, point, kShore, kAspect);
    } else {
        const float waves = noise({unit.x, std::sqrt(unit.y)}, 26, 90, 12);
        color = mix({0.30F, 0.56F, 0.64F}, {0.09F, 0.29F, 0.42F}, (point.y - kShore) / (1 - kShore));
        color = mix(color, {0.85F, 0.93F, 0.93F}, 0.75F * ramp(0.70F, 0.76F, waves));
    }
    color = sailboat(color, point, {0.32F, 0.72F}, 0.26F, {0.85F, 0.30F, 0.24F});
    color = sailboat(color, point, {0.98F, 0.64F}, 0.16F, {0.95F, 0.75F, 0.30F});
    color = sailboat(color, point, {1.22F, 0.86F}, 0.3F, {0.24F, 0.45F, 0.66F});
    return framed(color, point, kAspect, {0.97F, 0.96F, 0.92F});
}

} // namespace kestrin::session
