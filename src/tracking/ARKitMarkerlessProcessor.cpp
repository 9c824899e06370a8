#include "tracking/ARKitMarkerlessProcessor.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "platform/View.h"
#include "services/util/Format.h"
#include "tracking/SystemLevel.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

constexpr double kLightPeriod = 2.0; // seconds
constexpr const char* kTracker = "markerless";

bool hasFlag(const char* flag) { return KestrinFeatureFlags::getInstance()->containsFlag(flag); }

unsigned planesToDetect() {
    if (!systemIsAtLeast(11.3) || !hasFlag("verticalplanes"))
        return ArConfiguration::kHorizontal;
    return ArConfiguration::kVertical | (hasFlag("horizontalplanes") ? ArConfiguration::kHorizontal : 0U);
}

} // namespace

bool ARKitMarkerlessProcessor::isSupported() {
    return systemIsAtLeast(11.0) && platform::platform().tracking().isSupported();
}

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

void ARKitMarkerlessProcessor::setup(int width, int height) {
    scheduleLightUpdate();
    {
        const std::lock_guard lock(m_mutex);
        is_setup = false;
    }
    log("ARKitMarkerlessProcessor - Setup ARKit Started.");
    if (!systemIsAtLeast(11.0)) {
        log("Kestrin::ARKitMarkerlessProcessor::setup::ARKit is not available. You must use IOS 11+");
        return;
    }
    if (platform::platform().tracking().isSupported())
        setupWorld(width, height);
}

void ARKitMarkerlessProcessor::scheduleLightUpdate() {
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(is_lightupdate, true))
            return;
    }
    auto timer = platform::platform().dispatch().every(kLightPeriod, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->sendLightingInfo();
    });
    const std::lock_guard lock(m_mutex);
    m_lightTimer = std::move(timer);
}

void ARKitMarkerlessProcessor::setupWorld(int width, int height) {
    ArConfiguration configuration;
    configuration.kind = ArConfiguration::Kind::world;
    configuration.planeDetection = planesToDetect();
    if (systemIsAtLeast(11.3))
        configuration.autoFocusEnabled = hasFlag("autofocus");
    configuration.lightEstimationEnabled = true;
    runSessionWithConfig(configuration, width, height);
}

void ARKitMarkerlessProcessor::runSessionWithConfig(const ArConfiguration& configuration, int width,
                                                    int height) {
    bool sized = false;
    {
        const std::lock_guard lock(m_mutex);
        is_setup = true;
        sized = init_width != 0 && init_height != 0;
    }
    session->run(configuration, kResetTracking | kRemoveExistingAnchors);
    if (const auto listener = target()) {
        listener->onPlaneClear();
        listener->onPlaneStarted();
    }
    if (!sized)
        setViewport(width, height);
    updateUIOrientationMatrix();
    bool startNow = false;
    {
        const std::lock_guard lock(m_mutex);
        lastTrackingReason = TrackingReason::none;
        startNow = is_start;
    }
    if (startNow)
        start();
    log("ARKitMarkerlessProcessor - Setup ARKit Finished.");
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
