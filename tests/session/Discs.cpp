#include "Discs.h"

#include <algorithm>
#include <cstdint>

namespace kestrin::session::test {

namespace {

constexpr std::uint8_t kDark = 60;
constexpr int kMargin = 2; // pixels of white that belong to a disc's blurred edge

struct Spot {
    int left, top, right, bottom;
};

/// The bounding box of the dark pixels that hang together with one; they are marked as seen.
Spot grow(const platform::PixelPlane& luma, int x, int y, std::vector<bool>& seen) {
    Spot spot{x, y, x, y};
    std::vector<std::pair<int, int>> open{{x, y}};
    while (!open.empty()) {
        const auto [i, j] = open.back();
        open.pop_back();
        if (i < 0 || j < 0 || i >= luma.width || j >= luma.height)
            continue;
        const auto index = std::size_t(j * luma.width + i);
        if (seen[index] || luma.data[j * luma.stride + i] > kDark)
            continue;
        seen[index] = true;
        spot = {std::min(spot.left, i), std::min(spot.top, j), std::max(spot.right, i),
                std::max(spot.bottom, j)};
        open.insert(open.end(), {{i + 1, j}, {i - 1, j}, {i, j + 1}, {i, j - 1}});
    }
    return spot;
}

platform::Point centroid(const platform::PixelPlane& luma, const Spot& spot) {
    double x = 0, y = 0, weight = 0;
    for (int j = spot.top - kMargin; j <= spot.bottom + kMargin; ++j)
        for (int i = spot.left - kMargin; i <= spot.right + kMargin; ++i) {
            const double dark = 255 - luma.data[j * luma.stride + i];
            x += dark * (i + 0.5);
            y += dark * (j + 0.5);
            weight += dark;
        }
    return {x / weight, y / weight};
}

} // namespace

std::vector<platform::Point> findDiscs(const platform::PixelPlane& luma) {
    std::vector<bool> seen(std::size_t(luma.width) * std::size_t(luma.height));
    std::vector<platform::Point> centers;
    for (int y = 0; y < luma.height; ++y)
        for (int x = 0; x < luma.width; ++x) {
            if (seen[std::size_t(y * luma.width + x)] || luma.data[y * luma.stride + x] > kDark)
                continue;
            const Spot spot = grow(luma, x, y, seen);
            if (spot.left > kMargin && spot.top > kMargin && spot.right < luma.width - 1 - kMargin &&
                spot.bottom < luma.height - 1 - kMargin)
                centers.push_back(centroid(luma, spot));
        }
    return centers;
}

} // namespace kestrin::session::test
