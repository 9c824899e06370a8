#include "session/SimulatedTracking.h"

#include "session/RoomFile.h"
#include "session/SimulatedSource.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kestrin::session {

namespace {

int sideOf(int pixels) { return std::clamp(pixels, 16, 8192); }

/// Not a number becomes the usual rate.
double rateOf(double rate) { return std::isnan(rate) ? 30 : std::clamp(rate, 0.1, 1000.0); }

CameraModel modelOf(const SimulatedOptions& options, const Room& room) {
    const int width = sideOf(options.width), height = sideOf(options.height);
    const double angle = room.fieldOfView * std::numbers::pi / 180;
    const double focal = std::max(width, height) / 2.0 / std::tan(angle / 2);
    const platform::Intrinsics centred{focal, focal, width / 2.0, height / 2.0};
    return {options.intrinsics.value_or(centred), width, height, options.mounting};
}

} // namespace

SimulatedTracking::SimulatedTracking(SimulatedOptions options)
    : SourcedTracking(std::move(options.session)), m_room(options.room ? options.room : defaultRoom()),
      m_model(modelOf(options, *m_room)), m_rate(rateOf(options.rate)) {}

std::unique_ptr<FrameSource> SimulatedTracking::makeSource() const {
    return std::make_unique<SimulatedSource>(m_room, m_model, m_rate);
}

} // namespace kestrin::session
