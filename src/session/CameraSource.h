#pragma once

#include "session/FrameSource.h"

#include <functional>
#include <string_view>

namespace kestrin::session {

/// The pictures of a camera, in their order and at their times, without tracking. A camera that is not there,
/// or goes away, is looked for again and again.
class CameraSource final : public FrameSource {
  public:
    using Log = std::function<void(std::string_view)>;

    /// Cameras and dispatch outlive it; `log` may be empty.
    CameraSource(const CameraModel& model, platform::CaptureSystem& cameras, platform::Dispatch& dispatch,
                 Log log);
    ~CameraSource() override;

    CameraModel model() const override { return m_model; }
    double rate() const override;
    std::optional<std::string> open() override { return {}; }
    void begin(const platform::ArConfiguration& configuration, unsigned options) override;
    void rest() override;
    void forget(const std::string&) override {}
    std::optional<double> nextTime() const override { return m_due; }
    void skip() override;
    std::optional<SourcedFrame> next(int orientation, Nv12Buffer& picture) override;

  private:
    class Newest;

    void openCamera();
    void start(platform::CaptureInput& input);
    void tell(const std::string& line);
    void close();
    double frameTime(double presentationTime);

    const CameraModel m_model;
    platform::CaptureSystem& m_cameras;
    platform::Dispatch& m_dispatch;
    const Log m_log;
    const std::shared_ptr<platform::SerialQueue> m_queue;
    std::shared_ptr<Newest> m_newest;
    std::unique_ptr<platform::CaptureSession> m_session; ///< empty while there is no camera
    bool m_focuses = false;
    std::string m_told; ///< the last line in the log, until there is a camera
    // On the dispatch's clock:
    double m_due = 0;               ///< when to look for the next picture
    double m_lookAt = 0;            ///< when to look for a camera
    double m_lastSeen = 0;          ///< when there was a picture, or the camera was opened
    std::optional<double> m_offset; ///< from presentation times to those of frames
    double m_lastTime = 0;          ///< of a frame
};

} // namespace kestrin::session
