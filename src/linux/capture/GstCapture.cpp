#include "linux/capture/GstCapture.h"

#include "linux/capture/GstCamera.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr double kFirstLook = 0.5;       // seconds, once in a process at the most
constexpr double kPipewireTakesOver = 2; // seconds after the kernel

} // namespace

GstCapture::GstCapture(const CameraChoice& choice, platform::Dispatch& dispatch,
                       std::shared_ptr<platform::LogSink> log)
    : m_isMirrored(choice.isMirrored), m_log(std::move(log)),
      m_control(dispatch.makeSerialQueue("camera_control")),
      m_finder(std::make_shared<CameraFinder>(choice.camera, dispatch)),
      m_watch([finder = m_finder, &dispatch] {
          finder->lookAgain();
          dispatch.mainAfter(kPipewireTakesOver, [finder] { finder->lookAgain(); });
      }) {
    if (!choice.camera.empty())
        m_finder->begin();
}

std::vector<std::shared_ptr<platform::CaptureDevice>> GstCapture::backCameras() {
    m_finder->begin();
    if (!m_finder->waitForFirstLook(kFirstLook))
        m_log->write("Kestrin - Camera - The search for cameras is still going on.");
    std::vector<std::shared_ptr<platform::CaptureDevice>> cameras;
    for (const auto& description : m_finder->cameras())
        cameras.push_back(
            std::make_shared<GstCamera>(description, CameraMeans{m_finder, m_control, m_log}, m_isMirrored));
    if (cameras.empty())
        m_finder->lookAgain(); // for the next question
    return cameras;
}

} // namespace kestrin::gtk
