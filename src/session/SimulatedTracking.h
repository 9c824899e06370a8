#pragma once

#include "session/Room.h"
#include "session/SourcedTracking.h"

namespace kestrin::session {

struct SimulatedOptions {
    std::shared_ptr<const Room> room; ///< empty: the default room
    int width = 640, height = 480;    ///< pixels, 16 to 8192
    double rate = 30;                 ///< frames a second, 0.1 to 1000
    Mounting mounting = Mounting::turned;
    std::optional<platform::Intrinsics> intrinsics; ///< none: the room's field of view, centred
    SessionOptions session;
};

/// Sessions in a room that is drawn. Values out of their range are brought into it. Thread: any.
class SimulatedTracking final : public SourcedTracking {
  public:
    explicit SimulatedTracking(SimulatedOptions options);
    const Room& room() const { return *m_room; }

  protected:
    std::unique_ptr<FrameSource> makeSource() const override;

  private:
    const std::shared_ptr<const Room> m_room;
    const CameraModel m_model;
    const double m_rate;
};

} // namespace kestrin::session
