#pragma once

#include "session/FrameSource.h"
#include "session/Room.h"
#include "session/Sight.h"

namespace kestrin::session {

/// Finds the planes of a room, each the first time that enough of it is seen. Not thread-safe.
class PlaneFinder {
  public:
    explicit PlaneFinder(const Room& room);
    /// `kinds` are bits of PlaneDetection.
    void setKinds(unsigned kinds) { m_kinds = kinds; }
    /// New planes in sight, which a tracker finds only while its tracking is normal.
    void look(const Sight& sight, AnchorChanges& changes);
    void forget(const std::string& identifier, AnchorChanges& changes);
    void forgetAll(AnchorChanges& changes);

  private:
    struct Plane {
        Surface surface;
        unsigned kind; ///< a bit of PlaneDetection; 0 for a slope
        unsigned timesFound = 0;
        std::shared_ptr<const platform::ArPlaneAnchor> anchor = {}; ///< empty while not found
    };
    std::vector<Plane> m_planes;
    unsigned m_kinds = 0;
};

} // namespace kestrin::session
