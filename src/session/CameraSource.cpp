#include "session/CameraSource.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <utility>

namespace kestrin::session {

namespace {

constexpr double kRate = 30;            // frames a second, where a camera gives no others
constexpr double kShortestFrame = 0.01; // seconds from a picture until the next is looked for
constexpr double kLongestFrame = 0.1;   // seconds: the slowest that a camera may become in the dark
constexpr double kPatience = 0.1;       // seconds that a picture is waited for at a time
constexpr double kSilence = 8;          // seconds without a picture until the camera is given up
constexpr double kPause = 1;            // seconds between looks for a camera

void copyRows(const platform::PixelPlane& from, const platform::PixelPlane& shape, std::uint8_t* to,
              int bytes) {
    for (int y = 0; y < std::min(from.height, shape.height); ++y)
        std::memcpy(to + std::ptrdiff_t(shape.stride) * y, from.data + std::ptrdiff_t(from.stride) * y,
                    std::size_t(bytes));
}

void copyPicture(const platform::PixelBuffer& from, Nv12Buffer& to) {
    const platform::PixelPlane luma = to.plane(0), chroma = to.plane(1);
    copyRows(from.plane(0), luma, to.bytes(), std::min(luma.width, from.plane(0).width));
    copyRows(from.plane(1), chroma, to.bytes() + (chroma.data - luma.data),
             2 * std::min(chroma.width, from.plane(1).width));
}

} // namespace

/// Holds the newest picture of one camera until it is taken.
class CameraSource::Newest final : public platform::CaptureSampleDelegate {
  public:
    void captureOutput(const platform::PixelBufferRef& buffer, double presentationTime) override {
        auto came = std::optional(std::pair(buffer, presentationTime));
        {
            const std::lock_guard lock(m_mutex);
            m_picture.swap(came);
        }
        m_came.notify_all();
    }

    std::optional<std::pair<platform::PixelBufferRef, double>> take(double seconds) {
        std::unique_lock lock(m_mutex);
        m_came.wait_for(lock, std::chrono::duration<double>(seconds),
                        [this] { return m_picture.has_value(); });
        return std::exchange(m_picture, std::nullopt);
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::optional<std::pair<platform::PixelBufferRef, double>> m_picture;
};

CameraSource::CameraSource(const CameraModel& model, platform::CaptureSystem& cameras,
                           platform::Dispatch& dispatch, Log log)
    : m_model(model), m_cameras(cameras), m_dispatch(dispatch), m_log(std::move(log)),
      m_queue(dispatch.makeSerialQueue("camera_queue")) {}

CameraSource::~CameraSource() = default;

double CameraSource::rate() const { return kRate; }

void CameraSource::begin(const platform::ArConfiguration& configuration, unsigned) {
    m_focuses = configuration.autoFocusEnabled;
    m_due = m_lastSeen = m_dispatch.now();
    if (m_session)
        m_session->startRunning();
}

void CameraSource::rest() {
    if (m_session)
        m_session->stopRunning();
}

void CameraSource::openCamera() {
    m_lookAt = m_dispatch.now() + kPause;
    const auto cameras = m_cameras.backCameras();
    if (cameras.empty())
        return tell("Kestrin - Camera - There is none.");
    platform::CaptureDevice& camera = *cameras.back();
    if (m_focuses && camera.supportsContinuousAutoFocus())
        camera.focusContinuously(kLongestFrame);
    auto opened = camera.open();
    if (const auto* fault = std::get_if<std::string>(&opened))
        return tell("Kestrin - Camera - " + camera.localizedName() + " cannot be opened: " + *fault);
    start(*std::get<0>(opened));
    m_told.clear();
}

void CameraSource::start(platform::CaptureInput& input) {
    m_newest = std::make_shared<Newest>();
    platform::CaptureOutput output;
    output.width = m_model.width;
    output.height = m_model.height;
    output.exactSize = true;
    output.queue = m_queue;
    output.delegate = m_newest;
    m_session = input.makeSession(std::move(output));
    m_session->startRunning();
    m_lastSeen = m_dispatch.now();
}

/// Looking again finds the same wrong.
void CameraSource::tell(const std::string& line) {
    if (m_log && line != m_told)
        m_log(line);
    m_told = line;
}

void CameraSource::close() {
    m_session.reset();
    m_newest.reset();
}

void CameraSource::skip() { m_due = m_dispatch.now() + kShortestFrame; }

std::optional<SourcedFrame> CameraSource::next(int, Nv12Buffer& picture) {
    if (!m_session && m_dispatch.now() >= m_lookAt)
        openCamera();
    auto taken = m_session ? m_newest->take(kPatience) : std::nullopt;
    m_due = m_dispatch.now() + (m_session ? kShortestFrame : kPatience);
    if (taken)
        m_lastSeen = m_dispatch.now();
    else if (m_dispatch.now() - m_lastSeen > kSilence)
        close();
    if (!taken)
        return {};
    copyPicture(*taken->first, picture);
    SourcedFrame frame;
    frame.time = frameTime(taken->second);
    frame.sensorPose = platform::Matrix::identity();
    frame.intrinsics = m_model.intrinsics;
    frame.reason = platform::TrackingReason::initializing;
    return frame;
}

/// Time goes on from one camera to the next, whose clock may be another.
double CameraSource::frameTime(double presentationTime) {
    if (!m_offset || presentationTime + *m_offset <= m_lastTime)
        m_offset = (m_lastTime > 0 ? m_lastTime + 1 / kRate : 0) - presentationTime;
    return m_lastTime = presentationTime + *m_offset;
}

} // namespace kestrin::session
