#include "camera/YUVCameraAccess.h"

#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/Singleton.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

constexpr int kWidth = 640, kHeight = 480; // pixels
constexpr int kNominalRate = 60;           // frames a second
constexpr double kLongestFrame = 3.0 / 30; // seconds

void prepare(CaptureDevice& camera) {
    log("Kestrin::YUVCameraAccess::initialise::Back Device Name = %@", camera.localizedName());
    for (const FrameRateRange& range : camera.frameRateRanges())
        log("Kestrin::YUVCameraAccess::Supported Frame Rate: Min = %f Max = %f", range.minimum,
            range.maximum);
    if (camera.supportsContinuousAutoFocus())
        camera.focusContinuously(kLongestFrame);
    else
        log("Kestrin::YUVCameraAccess::initialise::ContinuousAutoFocus Mode is not supported.");
}

} // namespace

std::shared_ptr<YUVCameraAccess> YUVCameraAccess::getInstance() { return singleton<YUVCameraAccess>(); }

bool YUVCameraAccess::initialise() {
    if (initStatus) {
        log("Kestrin::YUVCameraAccess::Instance already initialised!");
        return false;
    }
    const auto input = openDevice();
    if (!input)
        return false;
    CaptureOutput output;
    output.width = kWidth;
    output.height = kHeight;
    output.queue = platform::platform().dispatch().makeSerialQueue("camera_queue");
    output.delegate = weak_from_this();
    {
        const std::lock_guard lock(m_mutex);
        cameraQueue = output.queue;
        session = input->makeSession(std::move(output));
    }
    picHeight = kHeight;
    picWidth = kWidth;
    captureFPS = kNominalRate;
    initStatus = true;
    return true;
}

std::shared_ptr<CaptureInput> YUVCameraAccess::openDevice() {
    const auto cameras = platform::platform().capture().backCameras();
    if (cameras.empty()) {
        log("Kestrin::YUVCameraAccess::initialise::Couldn't find suitable camera.");
        return nullptr;
    }
    prepare(*cameras.back());
    auto opened = cameras.back()->open();
    if (const auto* error = std::get_if<std::string>(&opened)) {
        log("Kestrin::YUVCameraAccess::initialise::Couldn't initialise device input. Error = %@", *error);
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    device = cameras.back();
    return std::get<0>(std::move(opened));
}

void YUVCameraAccess::deinitialise() {
    if (!initStatus)
        return;
    std::shared_ptr<CaptureSession> ended;
    {
        const std::lock_guard lock(m_mutex);
        ended = std::exchange(session, nullptr);
        device = nullptr;
        cameraQueue = nullptr;
    }
    if (ended)
        ended->stopRunning();
    removeDelegates();
    initStatus = false;
}

bool YUVCameraAccess::start() {
    if (runStatus) {
        log("Kestrin::YUVCameraAccess::start::Instance is already running!");
        return false;
    }
    if (!initStatus) {
        log("Kestrin::YUVCameraAccess::start::Instance has not been initialized yet.");
        return false;
    }
    runStatus = true;
    const std::lock_guard lock(m_mutex);
    if (session)
        session->startRunning();
    return true;
}

void YUVCameraAccess::stop() {
    if (!runStatus) {
        log("Kestrin::YUVCameraAccess::stop::Instance has already stopped!");
        return;
    }
    if (!initStatus) {
        log("Kestrin::YUVCameraAccess::stop::Instance has not been initialized yet.");
        return;
    }
    runStatus = false;
    const std::lock_guard lock(m_mutex);
    if (session)
        session->stopRunning();
}

void YUVCameraAccess::captureOutput(const PixelBufferRef& buffer, double presentationTime) {
    picWidth = buffer->width();
    picHeight = buffer->height();
    const std::lock_guard lock(delegateLock);
    delegates.forEach([&](CameraFrameConsumer& consumer) {
        consumer.cameraFrameReceivedWithBuffer(buffer, presentationTime, picWidth, picHeight);
    });
}

bool YUVCameraAccess::hasSession() const {
    const std::lock_guard lock(m_mutex);
    return session != nullptr;
}

void YUVCameraAccess::addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) {
    if (!hasSession()) {
        log("Kestrin::YUVCameraAccess::addDelegate::Instance has not been initialized yet.");
        return;
    }
    const std::lock_guard lock(delegateLock);
    if (!delegates.add(consumer))
        log("Kestrin::YUVCameraAccess::addDelegate::Delegate Instance already exists in List. Will not be "
            "added.");
}

void YUVCameraAccess::removeDelegate(const CameraFrameConsumer& consumer) {
    if (!hasSession()) {
        log("Kestrin::YUVCameraAccess::removeDelegate::Instance has not been initialized yet.");
        return;
    }
    delegates.remove(consumer);
}

void YUVCameraAccess::removeDelegates() {
    const std::lock_guard lock(delegateLock);
    delegates.clear();
}

AffineTransform YUVCameraAccess::getOrientationWithViewport(const Size&) const {
    return {0, -1, 1, 0, 0, 1}; // (x, y) to (y, 1 - x)
}

} // namespace kestrin
