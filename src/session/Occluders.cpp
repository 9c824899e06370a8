#include "session/Occluders.h"

#include <algorithm>
#include <cmath>

namespace kestrin::session {

namespace {

constexpr float kSkin = 0.02F; // metres

/// The way's stretch inside -half..half along one axis.
void clip(float from, float way, float half, float& enter, float& leave) {
    const float scale = 1 / (way != 0 ? way : 1e-12F);
    const float a = (-half - from) * scale, b = (half - from) * scale;
    enter = std::max(enter, std::min(a, b));
    leave = std::min(leave, std::max(a, b));
}

} // namespace

Occluders::Occluders(const Room& room) {
    for (const Box& box : room.boxes)
        m_blocks.push_back({box.center, 0.5F * box.size, std::cos(box.turn), std::sin(box.turn)});
    for (const Surface& surface : room.surfaces)
        m_sheets.push_back({surface.quad});
}

Vector3 Occluders::Block::inFrame(const Vector3& v) const {
    return {cosine * v.x - sine * v.z, v.y, sine * v.x + cosine * v.z};
}

bool Occluders::Block::contains(const Vector3& point) const {
    const Vector3 place = inFrame(point - center);
    return std::abs(place.x) < half.x && std::abs(place.y) < half.y && std::abs(place.z) < half.z;
}

float Occluders::Block::hit(const Vector3& from, const Vector3& way) const {
    const Vector3 start = inFrame(from - center), step = inFrame(way);
    float enter = 0, leave = 1;
    clip(start.x, step.x, half.x, enter, leave);
    clip(start.y, step.y, half.y, enter, leave);
    clip(start.z, step.z, half.z, enter, leave);
    return enter < leave ? enter : 1;
}

float Occluders::Sheet::hit(const Vector3& from, const Vector3& way) const {
    const float approach = dot(way, quad.out);
    const float distance = dot(quad.center - from, quad.out);
    if (approach == 0 || distance / approach <= 0 || distance / approach >= 1)
        return 1;
    const float t = distance / approach;
    const Vector3 offset = from + t * way - quad.center;
    const bool inside = std::abs(dot(offset, quad.right)) < quad.width / 2 &&
                        std::abs(dot(offset, quad.up)) < quad.height / 2;
    return inside ? t : 1;
}

float Occluders::firstHit(const Vector3& from, const Vector3& to) const {
    const Vector3 way = to - from;
    float first = 1;
    for (const Block& block : m_blocks)
        first = std::min(first, block.hit(from, way));
    for (const Sheet& sheet : m_sheets)
        first = std::min(first, sheet.hit(from, way));
    return first;
}

bool Occluders::blocks(const Vector3& from, const Vector3& to) const {
    const Vector3 whole = to - from;
    const Vector3 way = std::max(0.0F, 1 - kSkin / length(whole)) * whole;
    const auto inTheWay = [&](const auto& thing) { return thing.hit(from, way) < 1; };
    return std::any_of(m_blocks.begin(), m_blocks.end(), inTheWay) ||
           std::any_of(m_sheets.begin(), m_sheets.end(), inTheWay);
}

Occluders Occluders::near(const Vector3& a, const Vector3& b, float radius) const {
    const Vector3 way = b - a;
    Occluders result;
    for (const Block& block : m_blocks) {
        const Block wider{block.center, block.half + radius * Vector3{1, 1, 1}, block.cosine, block.sine};
        if (wider.contains(a) || wider.hit(a, way) < 1)
            result.m_blocks.push_back(block);
    }
    const float square = std::max(dot(way, way), 1e-12F);
    for (const Sheet& sheet : m_sheets) {
        const float t = std::clamp(dot(sheet.quad.center - a, way) / square, 0.0F, 1.0F);
        if (length(sheet.quad.center - a - t * way) < radius + sheet.quad.radius())
            result.m_sheets.push_back(sheet);
    }
    return result;
}

bool Occluders::contain(const Vector3& point) const {
    return std::any_of(m_blocks.begin(), m_blocks.end(),
                       [&](const Block& block) { return block.contains(point); });
}

} // namespace kestrin::session
