#pragma once

#include "session/FrameSource.h"
#include "session/PictureLook.h"
#include "session/Room.h"
#include "session/Sight.h"

namespace kestrin::session {

/// Finds the printed pictures of a room that a configuration asks for, by their name or else by their look.
/// With an image-only configuration it follows them from frame to frame. Not thread-safe.
class PictureFinder {
  public:
    explicit PictureFinder(const Room& room);
    void configure(const platform::ArConfiguration& configuration);
    /// Pictures are found only when `canFind`, but followed always.
    void look(const Sight& sight, bool canFind, AnchorChanges& changes);
    void forget(const std::string& identifier, AnchorChanges& changes);
    void forgetAll(AnchorChanges& changes);

  private:
    struct Print {
        const Picture* picture;
        std::shared_ptr<const platform::ArReferenceImage> reference = {}; ///< empty when nobody asks for it
        unsigned timesFound = 0;
        std::shared_ptr<const platform::ArImageAnchor> anchor = {}; ///< empty while not found
    };
    std::shared_ptr<const platform::ArReferenceImage>
    referenceFor(const Picture& picture, const platform::ArConfiguration& configuration);
    void find(Print& print, AnchorChanges& changes);
    void follow(Print& print, bool isSeen, AnchorChanges& changes);
    int trackedCount() const;

    const Room& m_room;
    std::vector<Print> m_prints;
    bool m_follows = false;
    int m_mostTracked = 0;
};

} // namespace kestrin::session
