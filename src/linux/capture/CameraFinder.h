#pragma once

#include "linux/capture/CameraDescription.h"
#include "platform/Dispatch.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kestrin::gtk {

/// Which cameras there are, as it was found in the background. Thread: any.
class CameraFinder : public std::enable_shared_from_this<CameraFinder> {
  public:
    /// `camera` is as for GstCapture. It looks on a queue of its own.
    CameraFinder(std::string camera, platform::Dispatch& dispatch);

    /// Begins to look; once is enough.
    void begin();
    /// Looks afresh, once it has begun and when nobody holds a camera.
    void lookAgain();
    /// This one has gone; it is found again should it come back.
    void lose(const CameraDescription& camera);
    /// As CameraTurn::hold; looks when it is dropped, if that was asked for meanwhile.
    std::shared_ptr<void> hold();
    /// Those known now, the preferred one last.
    CameraDescriptions cameras() const;
    /// Until the first look is over, but no longer than so many seconds after its beginning; whether it is.
    bool waitForFirstLook(double seconds) const;

  private:
    void look();
    void lookForDevices();
    void publish(CameraDescriptions found);

    const std::string m_camera;
    const std::shared_ptr<platform::SerialQueue> m_queue;
    std::atomic<bool> m_isDeferred = false; ///< a look waits until no camera is held
    mutable std::mutex m_mutex;             ///< guards the rest
    mutable std::condition_variable m_looked;
    std::chrono::steady_clock::time_point m_began; ///< zero before
    bool m_hasLooked = false, m_isAsked = false;
    CameraDescriptions m_cameras;
};

} // namespace kestrin::gtk
