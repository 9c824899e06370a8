#include "session/LightMap.h"

#include "session/SurfaceLight.h"

#include <algorithm>
#include <cmath>

namespace kestrin::session {

namespace {

constexpr float kTexelsPerMeter = 5, kFineTexelsPerMeter = 8;
constexpr float kFine = 1.5F;      ///< metres: shorter sides are looked at more finely
constexpr int kMostAlong = 48;     ///< texels along a side of a patch
constexpr float kMostTexels = 6e4; ///< of all patches: a huge room is looked at more coarsely
constexpr int kTile = 6;           ///< texels a side that share what stands around them
constexpr float kInset = 0.98F;    ///< edges are looked at a little further in, not inside the neighbour

int texelsAlong(float meters, float scale) {
    const float density = scale * (meters < kFine ? kFineTexelsPerMeter : kTexelsPerMeter);
    return std::clamp(int(std::ceil(meters * density)) + 1, 2, kMostAlong);
}

/// By which densities are made smaller so that the patches of a room keep within their number of texels.
float scaleFor(const Room& room) {
    float texels = 0;
    for (const Surface& surface : room.allSurfaces())
        texels += float(texelsAlong(surface.quad.width, 1) * texelsAlong(surface.quad.height, 1));
    return std::min(1.0F, kMostTexels / texels);
}

/// Of a texel on its surface, in [-1, 1].
float coordinate(int index, int count) { return kInset * (2 * float(index) / float(count - 1) - 1); }

Vector3 times(const Vector3& a, const Vector3& b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }

} // namespace

LightMap::LightMap(const Room& room) : m_light(room.light), m_occluders(room), m_scale(scaleFor(room)) {}

LightMap::Patch LightMap::add(const Quad& quad, const Vector3& tint) {
    const Place place = reserve(texelsAlong(quad.width, m_scale), texelsAlong(quad.height, m_scale));
    m_jobs.push_back({quad, tint, place});
    return patchOf(place);
}

void LightMap::bake() {
    for (const Job& job : m_jobs)
        bake(job);
    m_jobs.clear();
}

void LightMap::bake(const Job& job) {
    const Place& place = job.place;
    const Lights lights = lightsOn(job.quad, place.columns, place.rows);
    for (int i = 0; i < place.columns * place.rows; ++i) {
        const auto& light = lights[std::size_t(i)];
        set(place.x + i % place.columns, place.y + i / place.columns,
            times(job.tint, light ? *light : lightBeside(lights, place.columns, i)));
    }
}

LightMap::Lights LightMap::lightsOn(const Quad& quad, int columns, int rows) const {
    Lights lights(std::size_t(columns) * std::size_t(rows));
    const float radius =
        kTile * std::hypot(quad.width / float(columns - 1), quad.height / float(rows - 1)) / 2;
    for (int top = 0; top < rows; top += kTile)
        for (int left = 0; left < columns; left += kTile) {
            const int bottom = std::min(top + kTile, rows), right = std::min(left + kTile, columns);
            const Vector3 first = quad.at(coordinate(left, columns), coordinate(top, rows));
            const Vector3 last = quad.at(coordinate(right - 1, columns), coordinate(bottom - 1, rows));
            const SurfaceLight part(m_light, m_occluders, quad, 0.5F * (first + last), radius);
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    lights[std::size_t(y) * std::size_t(columns) + std::size_t(x)] =
                        part.at(coordinate(x, columns), coordinate(y, rows));
        }
    return lights;
}

/// What is covered by a box takes the light beside it, so that no darkness leaks out.
Vector3 LightMap::lightBeside(const Lights& lights, int columns, int index) {
    const int rows = int(lights.size()) / columns, x = index % columns, y = index / columns;
    Vector3 sum;
    float count = 0;
    for (int j = std::max(y - 1, 0); j <= std::min(y + 1, rows - 1); ++j)
        for (int i = std::max(x - 1, 0); i <= std::min(x + 1, columns - 1); ++i)
            if (const auto& light = lights[std::size_t(j * columns + i)]) {
                sum = sum + *light;
                ++count;
            }
    return count > 0 ? 1 / count * sum : sum;
}

LightMap::Patch LightMap::addGlowing(const Vector3& color) {
    const Place place = reserve(2, 2);
    for (int i = 0; i < 4; ++i)
        set(place.x + i % 2, place.y + i / 2, color);
    return patchOf(place);
}

LightMap::Place LightMap::reserve(int columns, int rows) {
    if (m_x + columns > kWidth) {
        m_x = 0;
        m_y += m_rowHeight;
        m_rowHeight = 0;
    }
    const Place place{m_x, m_y, columns, rows};
    m_x += columns;
    m_rowHeight = std::max(m_rowHeight, rows);
    m_texels.resize(std::max(m_texels.size(), std::size_t(m_y + m_rowHeight) * kWidth * 4));
    return place;
}

void LightMap::set(int x, int y, const Vector3& color) {
    const auto half = [](float value) {
        return std::uint8_t(std::clamp(value * 127.5F + 0.5F, 0.0F, 255.0F));
    };
    std::uint8_t* texel = &m_texels[std::size_t(y * kWidth + x) * 4];
    texel[0] = half(color.x);
    texel[1] = half(color.y);
    texel[2] = half(color.z);
    texel[3] = 255;
}

LightMap::Patch LightMap::patchOf(const Place& place) {
    return {float(place.x) + 0.5F, float(place.y) + 0.5F, float(place.x + place.columns) - 0.5F,
            float(place.y + place.rows) - 0.5F};
}

} // namespace kestrin::session
