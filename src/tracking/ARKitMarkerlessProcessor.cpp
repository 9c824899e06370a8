#include "tracking/ARKitMarkerlessProcessor.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "platform/View.h"
#include "services/util/Format.h"
#include "services/util/SystemLevel.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

constexpr const char* kTracker = "markerless";

bool hasFlag(const char* flag) { return KestrinFeatureFlags::getInstance()->containsFlag(flag); }

} // namespace

std::shared_ptr<ARKitMarkerlessProcessor>
ARKitMarkerlessProcessor::initWithDelegate(std::shared_ptr<CVManagerDelegate> target, const void*) {
    const std::shared_ptr<ARKitMarkerlessProcessor> processor(
        new ARKitMarkerlessProcessor(std::move(target)));
    if (systemIsAtLeast(11.0)) {
        processor->session = platform::platform().tracking().makeSession();
        processor->session->setDelegate(processor);
    }
    return processor;
}

ARKitMarkerlessProcessor::ARKitMarkerlessProcessor(std::shared_ptr<CVManagerDelegate> target)
    : _tracker_callback(std::move(target)) {}

ARKitMarkerlessProcessor::~ARKitMarkerlessProcessor() {
    // The last release may come on the session's own thread, which could not wait for its own end.
    releaseOnMain([lastHold = std::move(session)] {});
}

std::shared_ptr<CVManagerDelegate> ARKitMarkerlessProcessor::target() const {
    const std::lock_guard lock(m_mutex);
    return _tracker_callback;
}

void ARKitMarkerlessProcessor::detach() {
    std::shared_ptr<CVManagerDelegate> released;
    const std::lock_guard lock(m_mutex);
    released.swap(_tracker_callback);
}

void ARKitMarkerlessProcessor::start() {
    std::string tracker;
    {
        const std::lock_guard lock(m_mutex);
        is_start = !is_setup;
        if (is_start)
            return;
        tracker = _currentTracker;
    }
    log("ARKitMarkerlessProcessor::start");
    const auto listener = target();
    if (listener && !tracker.empty() && hasFlag("snap"))
        listener->onMarkerLost(tracker);
    {
        const std::lock_guard lock(m_mutex);
        viewportChanged = true;
    }
    updateProjectionMatrix();
    updateUIOrientationMatrix();
    {
        const std::lock_guard lock(m_mutex);
        _currentTracker = kTracker;
    }
    if (listener && hasFlag("snap"))
        listener->onMarkerFound(kTracker);
}

void ARKitMarkerlessProcessor::stop() {
    std::string tracker;
    {
        const std::lock_guard lock(m_mutex);
        tracker.swap(_currentTracker);
    }
    if (tracker.empty())
        return;
    log("ARKitMarkerlessProcessor::stop");
    if (const auto listener = target()) {
        listener->onMarkerLost(tracker);
        if (isFullMarkerTrackingSupported())
            listener->onTriggerClear();
        else
            listener->onPlaneClear();
    }
}

void ARKitMarkerlessProcessor::pause() {
    log("ARKitMarkerlessProcessor::pause");
    stop();
    if (session)
        session->pause();
}

void ARKitMarkerlessProcessor::reset() {
    log("ARKitMarkerlessProcessor::reset");
    int width = 0;
    int height = 0;
    {
        const std::lock_guard lock(m_mutex);
        width = init_width;
        height = init_height;
    }
    setup(width, height);
    start();
}

void ARKitMarkerlessProcessor::resetContext() {
    {
        const std::lock_guard lock(m_mutex);
        if (!is_setup)
            return;
    }
    if (const auto configuration = session->configuration())
        session->run(*configuration, kRemoveExistingAnchors);
}

void ARKitMarkerlessProcessor::startPlacement() {
    log("ARKit Placement mode is not supported. This is an operation which runs in the WebGL layer.");
}

void ARKitMarkerlessProcessor::sendLightingInfo() {
    if (const auto listener = target())
        listener->onLightEstimate(lightEstimate);
}

void ARKitMarkerlessProcessor::addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) {
    if (!delegates.add(consumer))
        log("Kestrin::ARKitMarkerlessProcessor::addDelegate::Delegate Instance already exists in List. Will "
            "not be added.");
}

} // namespace kestrin
