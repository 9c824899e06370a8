#include "session/CameraPath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace kestrin::session {

namespace {

using Four = std::array<float, 4>;

/// The weights of four neighbouring keys at a time between the middle two: a cubic whose slope at a key is
/// that between its neighbours.
Four weights(const std::array<double, 4>& times, double time) {
    const double span = times[2] - times[1];
    const double s = (time - times[1]) / span;
    const double before = span / (times[2] - times[0]), after = span / (times[3] - times[1]);
    const double start = s * (1 - s) * (1 - s) * before, end = s * s * (s - 1) * after;
    const double far = s * s * (3 - 2 * s);
    return {float(-start), float(1 - far - end), float(far + start), float(end)};
}

/// The one of the two quaternions of a rotation that is nearer to `reference`.
Quaternion nearest(const Quaternion& q, const Quaternion& reference) {
    const float same = q.x * reference.x + q.y * reference.y + q.z * reference.z + q.w * reference.w;
    return same < 0 ? Quaternion{-q.x, -q.y, -q.z, -q.w} : q;
}

/// Between -1 and 1, never quite repeating.
float waver(double seconds, double phase) {
    const double turn = 2 * std::numbers::pi * seconds;
    return float(0.6 * std::sin(turn * 0.31 + phase) + 0.3 * std::sin(turn * 0.73 + 2.1 * phase) +
                 0.1 * std::sin(turn * 1.87 + 3.7 * phase));
}

Matrix swayed(const Matrix& pose, const Sway& sway, double seconds) {
    const Vector3 shift = sway.distance * Vector3{waver(seconds, 1), waver(seconds, 2), waver(seconds, 3)};
    const float half = sway.angle / 2;
    const Quaternion tilt{half * waver(seconds, 4), half * waver(seconds, 5), half * waver(seconds, 6), 1};
    return pose * rigid(normalized(tilt), shift);
}

} // namespace

CameraPath::CameraPath(std::vector<CameraKey> keys, double period, double start, Sway sway)
    : m_keys(std::move(keys)), m_period(period), m_start(start), m_sway(sway) {}

const CameraKey& CameraPath::key(std::ptrdiff_t index) const {
    const auto count = std::ptrdiff_t(m_keys.size());
    return m_keys[std::size_t((index % count + count) % count)];
}

double CameraPath::keyTime(std::ptrdiff_t index) const {
    const auto count = std::ptrdiff_t(m_keys.size());
    const std::ptrdiff_t lap = index >= 0 ? index / count : (index - count + 1) / count;
    return key(index).time + double(lap) * m_period;
}

Matrix CameraPath::poseAt(double seconds) const {
    const double total = seconds + m_start;
    const double time = total - m_period * std::floor(total / m_period);
    const auto next = std::upper_bound(m_keys.begin(), m_keys.end(), time,
                                       [](double t, const CameraKey& k) { return t < k.time; });
    const std::ptrdiff_t here = next - m_keys.begin() - 1;
    const std::array times{keyTime(here - 1), keyTime(here), keyTime(here + 1), keyTime(here + 2)};
    const Four weight = weights(times, time);

    Vector3 where;
    Quaternion turn{0, 0, 0, 0};
    for (std::ptrdiff_t i = 0; i < 4; ++i) {
        const CameraKey& k = key(here - 1 + i);
        const float w = weight[std::size_t(i)];
        const Quaternion q = nearest(k.rotation, key(here).rotation);
        where = where + w * k.position;
        turn = {turn.x + w * q.x, turn.y + w * q.y, turn.z + w * q.z, turn.w + w * q.w};
    }
    return swayed(rigid(normalized(turn), where), m_sway, seconds);
}

} // namespace kestrin::session
