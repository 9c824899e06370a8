#include "camera/YUVCameraManager.h"

#include "platform/Platform.h"
#include "services/util/Format.h"

#include <cmath>
#include <utility>

namespace kestrin {

using namespace platform;

namespace {

constexpr int kFramesPerSecond = 45;
constexpr float kLowResolutionWidth = 480; // pixels

std::shared_ptr<RenderView> makeCameraView() {
    auto view = makeView<RenderView>();
    RenderViewSettings settings;
    settings.framebufferOnly = true;
    settings.preferredFramesPerSecond = kFramesPerSecond;
    view->setSettings(settings);
    if (!view->device())
        log("Metal is not supported on this device");
    return view;
}

} // namespace

std::shared_ptr<YUVCameraManager>
YUVCameraManager::initWithProvider(std::shared_ptr<CameraFrameProvider> provider) {
    const std::shared_ptr<YUVCameraManager> manager(new YUVCameraManager(std::move(provider)));
    manager->mView->setDelegate(manager);
    if (manager->_providerInstance)
        manager->_providerInstance->addDelegate(manager);
    return manager;
}

YUVCameraManager::YUVCameraManager(std::shared_ptr<CameraFrameProvider> provider)
    : mView(makeCameraView()), _providerInstance(std::move(provider)),
      _renderer(YUVCameraRenderer::initWithDevice(mView->device(), mView)) {}

YUVCameraManager::~YUVCameraManager() {
    if (_providerInstance)
        _providerInstance->removeDelegate(*this);
}

Size YUVCameraManager::cameraFrameReceivedWithBuffer(const PixelBufferRef& buffer, double, int bufferWidth,
                                                     int bufferHeight) {
    bool resized = false;
    Size shown;
    {
        const std::lock_guard lock(m_mutex);
        resized = bufferWidth != buffer_width || bufferHeight != buffer_height;
        buffer_width = bufferWidth;
        buffer_height = bufferHeight;
        shown = m_viewSize;
    }
    if (resized)
        updateViewport({double(bufferWidth), double(bufferHeight)});
    _renderer->renderCameraTex(buffer);
    return shown;
}

void YUVCameraManager::drawInView(RenderView&) { _renderer->update(); }

void YUVCameraManager::drawableSizeWillChange(RenderView& view, const Size&) {
    const Size points = view.bounds().size;
    {
        const std::lock_guard lock(m_mutex);
        m_viewSize = points;
    }
    updateViewport(points);
}

void YUVCameraManager::updateViewport(const Size& size) {
    const AffineTransform transform =
        _providerInstance ? _providerInstance->getOrientationWithViewport(size) : AffineTransform{};
    _renderer->updateViewportResized(size, transform);
}

Size YUVCameraManager::bufferSize() const {
    const std::lock_guard lock(m_mutex);
    return {double(buffer_width), double(buffer_height)};
}

Size YUVCameraManager::getScreenSize() const {
    const Screen screen = platform::platform().application().mainScreen();
    return {screen.size.width * screen.nativeScale, screen.size.height * screen.nativeScale};
}

Image YUVCameraManager::screenshot() const {
    const ImageLayer picture{mView->renderPeer().newestPicture(), mView->bounds()};
    const double scale = platform::platform().application().mainScreen().nativeScale;
    return platform::platform().images().compose(picture.rect.size, false, scale, {&picture, 1});
}

Image YUVCameraManager::screenshotLowRes() const { return imageWithImage(screenshot(), kLowResolutionWidth); }

Image YUVCameraManager::imageWithImage(const Image& image, float width) {
    if (!image.isValid())
        return {};
    const double factor = width / image.size().width;
    const Size size{image.size().width * factor, image.size().height * factor};
    const ImageLayer layer{image, {{}, size}};
    return platform::platform().images().compose(size, false, 1, {&layer, 1});
}

Size YUVCameraManager::fit_scale(const Size& content, const Size& view) {
    const float cw = float(content.width);
    const float ch = float(content.height);
    const float vw = float(view.width);
    const float vh = float(view.height);
    float width = vw;
    float height = vw / cw * ch;
    // Not "height < vh": a shape that is not a number takes this branch too.
    if (!(height >= vh)) {
        width = cw / ch * vh;
        height = vh;
    }
    return {std::trunc(width), std::trunc(height)};
}

} // namespace kestrin
