#include "session/SimulatedSource.h"

#include <utility>

namespace kestrin::session {

using platform::ArConfiguration;

SimulatedSource::SimulatedSource(std::shared_ptr<const Room> room, const CameraModel& model, double rate)
    : m_room(std::move(room)), m_model(model), m_rate(rate), m_occluders(*m_room), m_planes(*m_room),
      m_pictures(*m_room) {}

std::optional<std::string> SimulatedSource::open() {
    auto renderer = RoomRenderer::make(*m_room, m_model);
    if (auto* error = std::get_if<std::string>(&renderer))
        return std::move(*error);
    m_renderer = std::move(std::get<0>(renderer));
    return {};
}

void SimulatedSource::begin(const ArConfiguration& configuration, unsigned options) {
    if ((options & platform::kResetTracking) != 0)
        m_trackingSince = *nextTime();
    if ((options & platform::kRemoveExistingAnchors) != 0) {
        m_planes.forgetAll(m_changes);
        m_pictures.forgetAll(m_changes);
    }
    m_planes.setKinds(configuration.kind == ArConfiguration::Kind::world ? configuration.planeDetection : 0);
    m_pictures.configure(configuration);
}

void SimulatedSource::forget(const std::string& identifier) {
    m_planes.forget(identifier, m_changes);
    m_pictures.forget(identifier, m_changes);
}

std::optional<SourcedFrame> SimulatedSource::next(int orientation, Nv12Buffer& picture) {
    const double time = double(m_index++) / m_rate;
    // A sensor that turns with the device lies on its side in a device that is held upright.
    Matrix pose = m_room->path.poseAt(time);
    if (m_model.mounting == Mounting::turned)
        pose = pose * rigidInverse(screenTurn(orientation));
    m_renderer->render(pose, picture);

    const platform::TrackingReason reason = m_room->reasonAt(time - m_trackingSince);
    const bool isNormal = reason == platform::TrackingReason::none;
    const Sight sight(m_model, pose, m_occluders);
    if (isNormal)
        m_planes.look(sight, m_changes);
    m_pictures.look(sight, isNormal, m_changes);
    return SourcedFrame{time,
                        pose,
                        m_model.intrinsics,
                        reason,
                        m_room->light.intensityAt(time),
                        std::exchange(m_changes, {})};
}

} // namespace kestrin::session
