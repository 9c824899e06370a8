#pragma once

#include "camera/CameraFrameProvider.h"
#include "camera/YUVCameraRenderer.h"
#include "platform/Gpu.h"

#include <memory>
#include <mutex>

namespace kestrin {

/// Shows the camera picture: owns the view and its renderer, takes frames from a provider and keeps the
/// renderer's viewport transform current.
class YUVCameraManager : public CameraFrameConsumer,
                         public platform::RenderViewDelegate,
                         public std::enable_shared_from_this<YUVCameraManager> {
  public:
    /// Makes the view and becomes a consumer of `provider`, which may be null. Thread: main.
    static std::shared_ptr<YUVCameraManager> initWithProvider(std::shared_ptr<CameraFrameProvider> provider);
    ~YUVCameraManager() override;

    platform::Size cameraFrameReceivedWithBuffer(const platform::PixelBufferRef& buffer, double timeStamp,
                                                 int bufferWidth, int bufferHeight) override;

    /// Pacing, as the renderer describes it. Thread: any.
    void lockSignal() { _renderer->lockSignal(); }
    void unlockSignal() { _renderer->unlockSignal(); }
    void signal() { _renderer->signal(); }
    /// Ends all drawing, so that nobody waits for the drawing thread when the view goes. Thread: any.
    void stop() { _renderer->stop(); }

    void drawInView(platform::RenderView& view) override;
    void drawableSizeWillChange(platform::RenderView& view, const platform::Size& pixels) override;

    /// Points. Thread: main.
    platform::Size getViewport() const { return mView->bounds().size; }
    /// Of the last frame, as its provider names it; zero before. Thread: any.
    platform::Size bufferSize() const;
    const std::shared_ptr<platform::RenderView>& getView() const { return mView; }
    const std::shared_ptr<YUVCameraRenderer>& renderer() const { return _renderer; }
    /// Of the main screen, pixels. Thread: main.
    platform::Size getScreenSize() const;
    /// The picture that was drawn last, of the view's size, at the main screen's native scale; transparent
    /// before the first, absent while the view has no size. Waits for no drawing. Thread: main.
    platform::Image screenshot() const;
    /// The same 480 pixels wide. Thread: main.
    platform::Image screenshotLowRes() const;
    /// The image at a scale of 1, `width` pixels wide, its shape kept; an absent one stays absent. Thread:
    /// any.
    static platform::Image imageWithImage(const platform::Image& image, float width);
    /// The size at which `content` fills `view` with its shape kept, whole numbers. Thread: any.
    static platform::Size fit_scale(const platform::Size& content, const platform::Size& view);

  private:
    explicit YUVCameraManager(std::shared_ptr<CameraFrameProvider> provider);

    void updateViewport(const platform::Size& size);

    const std::shared_ptr<platform::RenderView> mView;
    const std::shared_ptr<CameraFrameProvider> _providerInstance;
    const std::shared_ptr<YUVCameraRenderer> _renderer;

    mutable std::mutex m_mutex; ///< guards the rest
    int buffer_width = 0, buffer_height = 0;
    platform::Size m_viewSize; ///< the view's, for the threads that must not look at it
};

} // namespace kestrin
