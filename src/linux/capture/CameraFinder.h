#pragma once

#include "linux/capture/CameraDescription.h"
#include "platform/Dispatch.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kestrin::gtk {

/// Which cameras there are: looked for in the background, and kept current while they come and go. Thread:
/// any.
class CameraFinder : public std::enable_shared_from_this<CameraFinder> {
  public:
    /// `camera` is as for GstCapture. It looks on a queue of its own.
    static std::shared_ptr<CameraFinder> make(std::string camera, platform::Dispatch& dispatch);
    ~CameraFinder();
    CameraFinder(const CameraFinder&) = delete;
    CameraFinder& operator=(const CameraFinder&) = delete;

    /// Begins to look; once is enough.
    void begin();
    /// Looks afresh, for what does not report itself.
    void lookAgain();
    /// This one has gone; it is found again should it come back.
    void lose(const CameraDescription& camera);
    /// Those known now, the preferred one last.
    CameraDescriptions cameras() const;
    /// Until the first look is over, but no longer than so many seconds after its beginning; whether it is.
    bool waitForFirstLook(double seconds) const;

  private:
    CameraFinder(std::string camera, std::shared_ptr<platform::SerialQueue> queue);

    void later(void (CameraFinder::*step)());
    void look();
    void watchDevices();
    void listDevices();
    void stopWatching();
    void publish(CameraDescriptions found);

    const std::string m_camera;
    const std::shared_ptr<platform::SerialQueue> m_queue;
    GRef<GstDeviceMonitor> m_monitor; ///< of the queue

    mutable std::mutex m_mutex; ///< guards the rest
    mutable std::condition_variable m_looked;
    std::chrono::steady_clock::time_point m_began; ///< zero before
    bool m_hasLooked = false, m_isAsked = false;
    CameraDescriptions m_cameras;
};

} // namespace kestrin::gtk
