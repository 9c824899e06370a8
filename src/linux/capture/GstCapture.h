#pragma once

#include "linux/capture/GstCamera.h"
#include "platform/Dispatch.h"

namespace kestrin::gtk {

/// The cameras that GStreamer finds: the kernel's, PipeWire's and libcamera's. Thread: main.
class GstCapture final : public platform::CaptureSystem {
  public:
    /// `camera` names the only one to be found, by its name or device file; "file:PATH" is a video that plays
    /// again and again, "test" a generated picture, empty any.
    GstCapture(std::string camera, platform::Dispatch& dispatch, std::shared_ptr<platform::LogSink> log);

    std::vector<std::shared_ptr<platform::CaptureDevice>> backCameras() override;

  private:
    std::vector<CameraDescription> find() const;

    const std::string m_camera;
    const std::shared_ptr<platform::LogSink> m_log;
    const std::shared_ptr<platform::SerialQueue> m_control;
};

} // namespace kestrin::gtk
