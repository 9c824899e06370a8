#pragma once

#include "session/FrameSource.h"
#include "session/PictureFinder.h"
#include "session/PlaneFinder.h"
#include "session/RoomRenderer.h"

namespace kestrin::session {

/// A room that is drawn as a camera on its scripted path would see it, with what an ideal tracker would find.
class SimulatedSource final : public FrameSource {
  public:
    SimulatedSource(std::shared_ptr<const Room> room, const CameraModel& model, double rate);

    CameraModel model() const override { return m_model; }
    double rate() const override { return m_rate; }
    std::optional<std::string> open() override;
    void begin(const platform::ArConfiguration& configuration, unsigned options) override;
    void forget(const std::string& identifier) override;
    std::optional<double> nextTime() const override { return double(m_index) / m_rate; }
    void skip() override { ++m_index; }
    std::optional<SourcedFrame> next(int orientation, Nv12Buffer& picture) override;

  private:
    const std::shared_ptr<const Room> m_room;
    const CameraModel m_model;
    const double m_rate;
    const Occluders m_occluders;
    PlaneFinder m_planes;
    PictureFinder m_pictures;
    std::unique_ptr<RoomRenderer> m_renderer;
    AnchorChanges m_changes; ///< since the last frame
    std::uint64_t m_index = 0;
    double m_trackingSince = 0; ///< seconds
};

} // namespace kestrin::session
