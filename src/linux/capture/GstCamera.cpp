#include "linux/capture/GstCamera.h"

#include "linux/capture/CaptureMode.h"
#include "linux/capture/CapturePipeline.h"
#include "linux/capture/Within.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr int kUsualWidth = 640, kUsualHeight = 480; // pixels
constexpr double kLongestOpening = 5;                // seconds

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
    Input(std::shared_ptr<CapturePipeline> pipeline, GstCapsPtr offered, double slowest)
        : m_pipeline(std::move(pipeline)), m_offered(std::move(offered)), m_slowest(slowest) {}

    std::unique_ptr<platform::CaptureSession> makeSession(platform::CaptureOutput output) override {
        const GstCapsPtr mode = captureMode(m_offered.get(), output.width, output.height, m_slowest);
        m_pipeline->setOutput(std::move(output), mode.get());
        return std::make_unique<Session>(m_pipeline);
    }

  private:
    const std::shared_ptr<CapturePipeline> m_pipeline;
    const GstCapsPtr m_offered;
    const double m_slowest;
};

} // namespace

GstCamera::GstCamera(CameraDescription description, std::shared_ptr<platform::SerialQueue> control,
                     std::shared_ptr<platform::LogSink> log)
    : m_description(std::move(description)), m_control(std::move(control)), m_log(std::move(log)),
      m_controls(m_description.devicePath) {}

std::vector<platform::FrameRateRange> GstCamera::frameRateRanges() const {
    return frameRates(captureMode(m_description.offered.get(), kUsualWidth, kUsualHeight, m_slowest).get());
}

void GstCamera::focusContinuously(double maximumFrameDuration) {
    m_controls.focusContinuously();
    m_controls.allowSlowerRate();
    m_slowest = 1 / maximumFrameDuration;
}

std::variant<std::shared_ptr<platform::CaptureInput>, std::string> GstCamera::open() {
    const auto source = GRef<GstElement>::refSink(m_description.makeSource());
    const auto pipeline =
        CapturePipeline::make({m_description.name, source, m_description.isLive}, m_control, m_log);
    using Answer = std::optional<std::string>;
    const auto error =
        within<Answer>(kLongestOpening, *m_control, [pipeline]() -> Answer { return pipeline->open(); });
    if (!error)
        return "it does not answer";
    if (*error)
        return **error;
    GstCapsPtr offered(m_description.offered ? gst_caps_ref(m_description.offered.get()) : nullptr);
    return std::make_shared<Input>(pipeline, std::move(offered), m_slowest);
}

} // namespace kestrin::gtk
