#pragma once

#include "session/FrameSource.h"

#include <map>
#include <string>

namespace kestrin::session {

/// What has happened to the anchors since they were last looked at. Not thread-safe.
class AnchorDifference {
  public:
    AnchorChanges look(const platform::ArAnchors& now);

  private:
    std::map<std::string, std::shared_ptr<const platform::ArAnchor>> m_known; ///< by identifier
};

} // namespace kestrin::session
