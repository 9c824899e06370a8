#include "session/CameraTracking.h"

#include "platform/Platform.h"
#include "session/CameraSource.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrin::session {

namespace {

CameraModel modelOf(const CameraOptions& options) {
    const int width = std::clamp(options.width, 16, 8192), height = std::clamp(options.height, 16, 8192);
    const double angle = std::clamp(options.fieldOfView, 10.0, 150.0) * std::numbers::pi / 180;
    const double focal = std::max(width, height) / 2.0 / std::tan(angle / 2);
    return {{focal, focal, width / 2.0, height / 2.0}, width, height, options.mounting};
}

SessionOptions atItsOwnPace(SessionOptions session) {
    session.pacing = Pacing::realTime;
    session.speed = 1;
    return session;
}

} // namespace

CameraTracking::CameraTracking(const CameraOptions& options)
    : SourcedTracking(atItsOwnPace(options.session)), m_model(modelOf(options)), m_log(options.session.log) {}

std::unique_ptr<FrameSource> CameraTracking::makeSource() const {
    platform::Platform& platform = platform::platform();
    return std::make_unique<CameraSource>(m_model, platform.capture(), platform.dispatch(), m_log);
}

} // namespace kestrin::session
