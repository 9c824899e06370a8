#pragma once

#include "linux/capture/GstParts.h"
#include "linux/capture/V4l2Controls.h"
#include "platform/Capture.h"
#include "platform/Log.h"

#include <functional>
#include <memory>
#include <string>

namespace kestrin::gtk {

/// What a camera is made from.
struct CameraDescription {
    std::string name;
    std::function<GstElement*()> makeSource; ///< gives a new element, or null
    bool isLive = true;                      ///< else a file
    GstCapsPtr offered;                      ///< what it can give; null when that shows only later
    std::string devicePath;                  ///< of the kernel's device, if that drives it
};

/// A camera behind GStreamer. Thread: main.
class GstCamera final : public platform::CaptureDevice {
  public:
    /// `control` runs what may take the camera's time.
    GstCamera(CameraDescription description, std::shared_ptr<platform::SerialQueue> control,
              std::shared_ptr<platform::LogSink> log);

    std::string localizedName() const override { return m_description.name; }
    std::vector<platform::FrameRateRange> frameRateRanges() const override;
    /// Where the kernel's driver has it; other cameras keep the focus that they have.
    bool supportsContinuousAutoFocus() const override { return m_controls.canFocusContinuously(); }
    void focusContinuously(double maximumFrameDuration) override;
    std::variant<std::shared_ptr<platform::CaptureInput>, std::string> open() override;

  private:
    const CameraDescription m_description;
    const std::shared_ptr<platform::SerialQueue> m_control;
    const std::shared_ptr<platform::LogSink> m_log;
    const V4l2Controls m_controls;
    double m_slowest = 0; ///< frames a second
};

} // namespace kestrin::gtk
