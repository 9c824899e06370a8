#include "tracking/CVManager.h"

#include "camera/YUVCameraManager.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"
#include "services/util/Numbers.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "ui/KestrinCustomView.h"

namespace kestrin {

using namespace platform;

namespace {

constexpr int kFirstWidth = 480; // pixels
constexpr int kFirstHeight = 640;
constexpr double kViewportScale = 2; // whatever the screen's scale: pages count on it

} // namespace

CVManager::CVManager() = default;

CVManager::~CVManager() = default;

std::shared_ptr<CVManager> CVManager::initWithKeys(const void* keys) {
    const std::shared_ptr<CVManager> manager(new CVManager);
    if (checkARKitSupport())
        manager->construct(keys);
    // After the set-up: what it reported is forgotten, and its Started opens no gate.
    manager->removeAllDelegates();
    manager->doCallbacksOnUIThread = false;
    manager->sendPlaneUpdates = false;
    manager->sendTriggerUpdates = false;
    return manager;
}

void CVManager::construct(const void* keys) {
    markerless_process = ARKitMarkerlessProcessor::initWithDelegate(shared_from_this(), keys);
    camera_provider = markerless_process;
    markerless_process->setup(kFirstWidth, kFirstHeight);
    camera_provider->initialiseCamera();
    camera_manager = YUVCameraManager::initWithProvider(camera_provider);
}

bool CVManager::checkARKitSupport() { return ARKitMarkerlessProcessor::isSupported(); }

bool CVManager::checkARKitImageTrackerSupport() {
    return ARKitMarkerlessProcessor::isMarkerTrackingSupported();
}

void CVManager::reset() {
    if (markerless_process)
        markerless_process->reset();
}

void CVManager::cleanContext() {
    if (markerless_process)
        markerless_process->resetContext();
}

std::optional<std::string> CVManager::snapMarker() const {
    return markerless_process ? markerless_process->snapMarker() : std::nullopt;
}

void CVManager::startMarkerlessTracking() {
    if (!markerless_process)
        return;
    markerless_process->start();
    camera_manager->lockSignal();
}

void CVManager::startMarkerlessPlacement() {
    if (!markerless_process)
        return;
    markerless_process->startPlacement();
    camera_manager->lockSignal();
}

void CVManager::stopMarkerlessTracking() {
    log("CVManager - stopping markerless tracking");
    if (!markerless_process)
        return;
    markerless_process->stop();
    camera_manager->unlockSignal();
}

void CVManager::startCamera() {
    if (!camera_provider)
        return;
    camera_provider->startCamera();
    camera_manager->lockSignal();
}

void CVManager::stopCamera() {
    if (!camera_provider)
        return;
    camera_provider->stopCamera();
    camera_manager->unlockSignal();
}

void CVManager::pause() {
    log("CVManager - pause");
    stopCamera();
    stopMarkerlessTracking();
    if (markerless_process)
        markerless_process->pause();
}

void CVManager::resume() {
    log("CVManager - resume");
    startCamera();
    reset();
}

void CVManager::detach() {
    if (!markerless_process)
        return;
    markerless_process->detach();
    camera_manager->stop();
}

void CVManager::addDelegate(const std::shared_ptr<CVManagerDelegate>& listener) {
    if (!callback_delegates.add(listener))
        log("CVManager - addDelegate - delegate instance already exists in list. Will not be added.");
}

std::shared_ptr<View> CVManager::getRenderView() const {
    return camera_manager ? camera_manager->getView() : nullptr;
}

void CVManager::addToParentView(const std::shared_ptr<View>& parent) {
    if (!parent) {
        log("CVManager - addToSubview - cannot add since view argument is NULL.");
        return;
    }
    if (divertToMain([self = shared_from_this(), parent] { self->addToParentView(parent); }))
        return;
    if (!camera_manager)
        return;
    KestrinCustomView::addClipConstraints(camera_manager->getView(), parent);
    const Size size = parent->frame().size;
    markerless_process->setViewport(saturatingCast<int>(size.width * kViewportScale),
                                    saturatingCast<int>(size.height * kViewportScale));
}

void CVManager::clipToParent() {
    if (divertToMain([self = shared_from_this()] { self->clipToParent(); }))
        return;
    if (camera_manager)
        KestrinCustomView::clipToParent(camera_manager->getView());
}

void CVManager::removeFromParentView() {
    if (divertToMain([self = shared_from_this()] { self->removeFromParentView(); }))
        return;
    if (camera_manager)
        KestrinCustomView::removeFromParent(camera_manager->getView());
}

void CVManager::setViewport(const Size& size) {
    if (divertToMain([self = shared_from_this(), size] { self->setViewport(size); }))
        return;
    if (markerless_process)
        markerless_process->setViewport(saturatingCast<int>(size.width), saturatingCast<int>(size.height));
}

Size CVManager::getViewportSize() const {
    return camera_manager ? camera_manager->getView()->frame().size : Size();
}

Size CVManager::getScreenSize() const {
    const Screen screen = platform::platform().application().mainScreen();
    return {screen.size.width * screen.nativeScale, screen.size.height * screen.nativeScale};
}

Size CVManager::getScreenSizeUnscaled() const { return platform::platform().application().mainScreen().size; }

bool CVManager::isRetinaDisplay() const {
    const Screen screen = platform::platform().application().mainScreen();
    return screen.hasDisplayLink && screen.scale > 1.0;
}

Image CVManager::getScreenshot() const { return camera_manager ? camera_manager->screenshot() : Image(); }

Image CVManager::getScreenshotLowRes() const {
    return camera_manager ? camera_manager->screenshotLowRes() : Image();
}

void CVManager::signal() {
    if (camera_manager)
        camera_manager->signal();
}

} // namespace kestrin
