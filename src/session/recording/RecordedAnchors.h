#pragma once

#include "session/FrameSource.h"

#include <map>
#include <string>
#include <vector>

namespace kestrin::session {

/// The anchors of a recording as a session gets them: those that its configuration asks for, found afresh
/// under another identifier after they were forgotten. Not thread-safe.
class RecordedAnchors {
  public:
    void configure(const platform::ArConfiguration& configuration);
    /// What the recording says of the next frame.
    void apply(const AnchorChanges& recorded);
    /// The recording begins again, without any.
    void restart();
    void forget(const std::string& identifier);
    void forgetAll();
    /// What a session is told now.
    AnchorChanges take();

  private:
    using AnchorRef = std::shared_ptr<const platform::ArAnchor>;
    struct Entry {
        AnchorRef recorded;
        AnchorRef given = {}; ///< empty while the session has not got it
        bool isChanged = false;
    };
    std::vector<Entry>::iterator find(const AnchorRef& recorded);
    /// Lets the session have it no more.
    void takeBack(Entry& entry);
    AnchorRef freshCopy(const AnchorRef& recorded);

    platform::ArConfiguration m_configuration;
    std::vector<Entry> m_entries; ///< those that the recording has now, in the order in which they came
    platform::ArAnchors m_removed;
    std::map<std::string, unsigned> m_timesFound; ///< by the recorded identifier
};

} // namespace kestrin::session
