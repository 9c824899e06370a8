#pragma once

#include "session/FrameSource.h"

namespace kestrin::session {

/// The anchors that there are, and the changes that nobody has been told of yet. Not thread-safe.
class AnchorLedger {
  public:
    void apply(const AnchorChanges& changes);
    const platform::ArAnchors& current() const { return m_current; }

    /// Changes to be told now; they count as told.
    platform::ArAnchors takeAdded();
    platform::ArAnchors takeUpdated();
    platform::ArAnchors takeRemoved();

  private:
    platform::ArAnchors m_current;
    AnchorChanges m_untold;
};

} // namespace kestrin::session
