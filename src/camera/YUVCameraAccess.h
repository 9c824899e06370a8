#pragma once

#include "camera/CameraFrameProvider.h"
#include "camera/ListenerList.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace kestrin {

/// The camera, where the system runs without world tracking: opens it and hands its pictures to consumers, in
/// the order added, on the queue "camera_queue". Thread: any, for what is not said to be main.
class YUVCameraAccess : public CameraFrameProvider,
                        public platform::CaptureSampleDelegate,
                        public std::enable_shared_from_this<YUVCameraAccess> {
  public:
    static std::shared_ptr<YUVCameraAccess> getInstance();

    /// Opens the last of the cameras found. False, with a line in the log, when there is none, when it cannot
    /// be opened and when one is open. Thread: main.
    bool initialise();
    /// Gives the camera back and forgets the consumers. A camera that was running counts as running until
    /// `stop`.
    void deinitialise();
    /// False, with a line in the log, when it runs or is not open.
    bool start();
    void stop();

    /// Thread: main.
    void initialiseCamera() override { initialise(); }
    void startCamera() override { start(); }
    void stopCamera() override { stop(); }

    bool isInitialised() const { return initStatus; }
    bool isRunning() const { return runStatus; }
    /// Pixels; what was asked for until the first picture has come.
    int getCaptureWidth() const { return picWidth; }
    int getCaptureHeight() const { return picHeight; }
    /// A nominal rate, whatever the camera does.
    int getFPS() const { return captureFPS; }

    /// Only while a camera is open.
    void addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) override;
    void removeDelegate(const CameraFrameConsumer& consumer) override;
    /// When it returns no consumer is being called any more, but for one that calls this itself.
    void removeDelegates() override;
    /// Turns the landscape picture upright in portrait, whatever the viewport.
    platform::AffineTransform getOrientationWithViewport(const platform::Size& viewport) const override;

    /// Thread: camera.
    void captureOutput(const platform::PixelBufferRef& buffer, double presentationTime) override;

  private:
    std::shared_ptr<platform::CaptureInput> openDevice();
    bool hasSession() const;

    mutable std::mutex m_mutex; ///< guards the next three; never held while a consumer is called
    std::shared_ptr<platform::CaptureSession> session;
    std::shared_ptr<platform::CaptureDevice> device;
    std::shared_ptr<platform::SerialQueue> cameraQueue;

    std::recursive_mutex delegateLock; ///< held while consumers are called
    ListenerList<CameraFrameConsumer> delegates;

    std::atomic<bool> initStatus = false, runStatus = false;
    std::atomic<int> picWidth = 0, picHeight = 0, captureFPS = 0;
};

} // namespace kestrin
