#include "linux/capture/GstCamera.h"

#include "linux/capture/CaptureMode.h"
#include "linux/capture/CapturePipeline.h"
#include "linux/capture/V4l2Controls.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr int kUsualWidth = 640, kUsualHeight = 480; // pixels

class Session final : public platform::CaptureSession {
  public:
    explicit Session(std::shared_ptr<CapturePipeline> pipeline) : m_pipeline(std::move(pipeline)) {}
    ~Session() override { m_pipeline->stopRunning(); }
    void startRunning() override { m_pipeline->startRunning(); }
    void stopRunning() override { m_pipeline->stopRunning(); }

  private:
    const std::shared_ptr<CapturePipeline> m_pipeline;
};

class Input final : public platform::CaptureInput {
  public:
    Input(PictureSource source, CameraMeans means, const CameraDescription& camera, double slowest)
        : m_source(std::move(source)), m_means(std::move(means)),
          m_offered(camera.offered ? gst_caps_ref(camera.offered.get()) : nullptr), m_slowest(slowest) {}

    std::unique_ptr<platform::CaptureSession> makeSession(platform::CaptureOutput output) override {
        m_source.mode = captureMode(m_offered.get(), output.width, output.height, m_slowest);
        return std::make_unique<Session>(
            CapturePipeline::make(std::move(m_source), std::move(output), m_means.control, m_means.log));
    }

  private:
    PictureSource m_source;
    const CameraMeans m_means;
    const GstCapsPtr m_offered;
    const double m_slowest;
};

/// What can be said of a camera without asking the camera itself.
std::string faultOf(const CameraDescription& camera, GstElement* source) {
    if (!camera.fault.empty())
        return camera.fault;
    if (!source)
        return "GStreamer lacks an element for it";
    const bool isRefused = camera.isDirect && ::access(camera.devicePath.c_str(), R_OK | W_OK) != 0;
    return isRefused ? std::system_category().message(errno) : "";
}

} // namespace

std::vector<platform::FrameRateRange> GstCamera::frameRateRanges() const {
    return frameRates(captureMode(m_description->offered.get(), kUsualWidth, kUsualHeight, m_slowest).get());
}

void GstCamera::focusContinuously(double maximumFrameDuration) {
    m_slowest = 1 / maximumFrameDuration;
    m_means.control->async([controls = V4l2Controls(m_description->devicePath)] {
        controls.focusContinuously();
        controls.allowSlowerRate();
    });
}

std::variant<std::shared_ptr<platform::CaptureInput>, std::string> GstCamera::open() {
    auto element = GRef<GstElement>::refSink(m_description->makeSource());
    if (std::string fault = faultOf(*m_description, element.get()); !fault.empty())
        return fault;
    PictureSource source{
        .name = m_description->name,
        .element = std::move(element),
        .isLive = m_description->isLive,
        .isMirrored = m_isMirrored,
        .hold = [finder = m_means.finder] { return finder->hold(); },
        .whenLost = [finder = m_means.finder, camera = m_description] { finder->lose(*camera); }};
    return std::make_shared<Input>(std::move(source), m_means, *m_description, m_slowest);
}

} // namespace kestrin::gtk
