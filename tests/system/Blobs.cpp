#include "Blobs.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrin::test {

namespace {

using platform::Image;
using platform::Point;

std::array<double, 3> colorAt(const Image& image, int x, int y) {
    const auto* pixel =
        image.pixels().data() + (std::size_t(y) * std::size_t(image.pixelWidth()) + std::size_t(x)) * 4;
    return {double(pixel[0]), double(pixel[1]), double(pixel[2])};
}

double lumaAt(const Image& image, int x, int y) {
    const auto [r, g, b] = colorAt(image, x, y);
    return 0.299 * r + 0.587 * g + 0.114 * b;
}

/// Flood fill over coverage above a half, with a rim of two pixels for the soft edge.
class Region {
  public:
    Region(int width, int height, const Coverage& coverage)
        : m_width(width), m_height(height), m_coverage(coverage) {
        m_seen.resize(std::size_t(width) * std::size_t(height));
    }

    bool isSeed(int x, int y) { return !seen(x, y) && m_coverage(x, y) > 0.5; }

    Blob grow(int x, int y) {
        std::vector<std::pair<int, int>> open{{x, y}};
        seen(x, y) = true;
        int left = x, right = x, top = y, bottom = y;
        while (!open.empty()) {
            const auto [px, py] = open.back();
            open.pop_back();
            left = std::min(left, px), right = std::max(right, px);
            top = std::min(top, py), bottom = std::max(bottom, py);
            for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
                if (inside(px + dx, py + dy) && isSeed(px + dx, py + dy)) {
                    seen(px + dx, py + dy) = true;
                    open.emplace_back(px + dx, py + dy);
                }
        }
        return centroid(left - 2, top - 2, right + 2, bottom + 2);
    }

  private:
    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
    std::vector<bool>::reference seen(int x, int y) {
        return m_seen[std::size_t(y) * std::size_t(m_width) + std::size_t(x)];
    }

    Blob centroid(int left, int top, int right, int bottom) const {
        Blob blob;
        blob.touchesEdge = !inside(left, top) || !inside(right, bottom);
        for (int y = std::max(top, 0); y <= std::min(bottom, m_height - 1); ++y)
            for (int x = std::max(left, 0); x <= std::min(right, m_width - 1); ++x) {
                const double weight = m_coverage(x, y);
                blob.area += weight;
                blob.centre.x += weight * (x + 0.5);
                blob.centre.y += weight * (y + 0.5);
            }
        blob.centre.x /= blob.area;
        blob.centre.y /= blob.area;
        return blob;
    }

    int m_width, m_height;
    const Coverage& m_coverage;
    std::vector<bool> m_seen;
};

/// The window of a picture around a point.
struct Window {
    int left, top, width, height;

    Window(const Image& image, const Point& centre, double reach)
        : left(std::max(0, int(centre.x - reach))), top(std::max(0, int(centre.y - reach))),
          width(std::min(image.pixelWidth(), int(centre.x + reach)) - left),
          height(std::min(image.pixelHeight(), int(centre.y + reach)) - top) {}
};

} // namespace

double distance(const Point& a, const Point& b) { return std::hypot(a.x - b.x, a.y - b.y); }

std::vector<Blob> findBlobs(int width, int height, const Coverage& coverage) {
    Region region(width, height, coverage);
    std::vector<Blob> blobs;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (region.isSeed(x, y))
                blobs.push_back(region.grow(x, y));
    return blobs;
}

std::vector<Blob> findDiscs(const Image& with, const Image& without, const std::array<double, 3>& color) {
    // with = (1 - coverage) * without + coverage * color, solved for coverage over the three channels.
    const Coverage coverage = [&](int x, int y) {
        const auto shown = colorAt(with, x, y), behind = colorAt(without, x, y);
        double along = 0, whole = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            along += (shown[i] - behind[i]) * (color[i] - behind[i]);
            whole += (color[i] - behind[i]) * (color[i] - behind[i]);
        }
        return whole > 0 ? std::clamp(along / whole, 0.0, 1.0) : 0.0;
    };
    return findBlobs(with.pixelWidth(), with.pixelHeight(), coverage);
}

std::optional<Blob> findMark(const Image& image, const Point& near, double reach) {
    const Window window(image, near, reach);
    if (window.width < 4 || window.height < 4)
        return std::nullopt;
    const auto luma = [&](int x, int y) { return lumaAt(image, window.left + x, window.top + y); };
    double darkest = 255, brightest = 0;
    for (int y = 0; y < window.height; ++y)
        for (int x = 0; x < window.width; ++x) {
            darkest = std::min(darkest, luma(x, y));
            brightest = std::max(brightest, luma(x, y));
        }
    if (brightest - darkest < 80)
        return std::nullopt;
    const Coverage coverage = [&](int x, int y) {
        // Steepened, so that shading of the white and of the black counts for nothing.
        return std::clamp(((brightest - luma(x, y)) / (brightest - darkest) - 0.2) / 0.6, 0.0, 1.0);
    };
    std::optional<Blob> nearest;
    for (Blob blob : findBlobs(window.width, window.height, coverage)) {
        blob.centre.x += window.left;
        blob.centre.y += window.top;
        if (!blob.touchesEdge && (!nearest || distance(blob.centre, near) < distance(nearest->centre, near)))
            nearest = blob;
    }
    return nearest;
}

} // namespace kestrin::test
