#pragma once

#include "linux/capture/CameraFinder.h"
#include "platform/Capture.h"
#include "platform/Log.h"

#include <memory>
#include <string>

namespace kestrin::gtk {

/// What all cameras share.
struct CameraMeans {
    std::shared_ptr<CameraFinder> finder;
    std::shared_ptr<platform::SerialQueue> control; ///< runs what may take the camera's time
    std::shared_ptr<platform::LogSink> log;
};

/// A camera behind GStreamer. Nothing here waits for it: it is opened when its session starts, and what is
/// wrong then is the session's failure. Thread: any, one at a time.
class GstCamera final : public platform::CaptureDevice {
  public:
    GstCamera(std::shared_ptr<const CameraDescription> description, CameraMeans means, bool isMirrored)
        : m_description(std::move(description)), m_means(std::move(means)), m_isMirrored(isMirrored) {}

    std::string localizedName() const override { return m_description->name; }
    std::vector<platform::FrameRateRange> frameRateRanges() const override;
    /// Where the kernel's driver has it; other cameras keep the focus that they have.
    bool supportsContinuousAutoFocus() const override { return m_description->canFocus; }
    void focusContinuously(double maximumFrameDuration) override;
    std::variant<std::shared_ptr<platform::CaptureInput>, std::string> open() override;

  private:
    const std::shared_ptr<const CameraDescription> m_description;
    const CameraMeans m_means;
    const bool m_isMirrored;
    double m_slowest = 0; ///< frames a second
};

} // namespace kestrin::gtk
