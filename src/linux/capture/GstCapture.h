#pragma once

#include "linux/capture/CameraFinder.h"
#include "linux/capture/DeviceWatch.h"
#include "platform/Capture.h"
#include "platform/Log.h"

namespace kestrin::gtk {

/// Which camera a host wants, and how.
struct CameraChoice {
    /// Names the only one to be found, as `camerasNamed` does; "file:PATH" is a video that plays again and
    /// again, "test" a generated picture, empty any.
    std::string camera;
    bool isMirrored = false; ///< left and right change places
};

/// The cameras that GStreamer finds: the kernel's, PipeWire's and libcamera's. The search begins at once when
/// one is named, else with the first question. Made and destroyed on main.
class GstCapture final : public platform::CaptureSystem {
  public:
    GstCapture(const CameraChoice& choice, platform::Dispatch& dispatch,
               std::shared_ptr<platform::LogSink> log);

    std::vector<std::shared_ptr<platform::CaptureDevice>> backCameras() override;

  private:
    const bool m_isMirrored;
    const std::shared_ptr<platform::LogSink> m_log;
    const std::shared_ptr<platform::SerialQueue> m_control;
    const std::shared_ptr<CameraFinder> m_finder;
    const DeviceWatch m_watch;
};

} // namespace kestrin::gtk
