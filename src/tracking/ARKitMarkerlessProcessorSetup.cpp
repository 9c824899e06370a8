#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/SystemLevel.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "tracking/KestrinTriggerList.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

constexpr double kLightPeriod = 2.0; // seconds
constexpr int kLoadingTriggers = 5;  // reasons, as the next
constexpr int kTriggersLoaded = 1;

bool hasFlag(const char* flag) { return KestrinFeatureFlags::getInstance()->containsFlag(flag); }

unsigned planesToDetect() {
    if (!systemIsAtLeast(11.3) || !hasFlag("verticalplanes"))
        return ArConfiguration::kHorizontal;
    return ArConfiguration::kVertical | (hasFlag("horizontalplanes") ? ArConfiguration::kHorizontal : 0U);
}

/// Whether images are followed without a world about them.
bool wantsImagesOnly() {
    return systemIsAtLeast(12.0) && ARKitMarkerlessProcessor::isFullMarkerTrackingSupported() &&
           !hasFlag("snap") && !hasFlag("triggerlock") && !hasFlag("lockonloss");
}

ArConfiguration imageConfiguration() {
    ArConfiguration configuration;
    configuration.kind = ArConfiguration::Kind::imageOnly;
    // The flag means the opposite here of what it means in a world: pages count on it.
    configuration.autoFocusEnabled = !hasFlag("autofocus");
    configuration.maximumNumberOfTrackedImages = 1;
    configuration.lightEstimationEnabled = true;
    return configuration;
}

ArConfiguration worldConfiguration() {
    ArConfiguration configuration;
    configuration.kind = ArConfiguration::Kind::world;
    configuration.planeDetection = planesToDetect();
    if (systemIsAtLeast(11.3))
        configuration.autoFocusEnabled = hasFlag("autofocus");
    configuration.lightEstimationEnabled = true;
    return configuration;
}

} // namespace

bool ARKitMarkerlessProcessor::isSupported() {
    return systemIsAtLeast(11.0) && platform::platform().tracking().isSupported();
}

bool ARKitMarkerlessProcessor::isMarkerTrackingSupported() {
    return isSupported() && systemIsAtLeast(11.3) && KestrinTriggerList::isSupported();
}

bool ARKitMarkerlessProcessor::isFullMarkerTrackingSupported() {
    return isMarkerTrackingSupported() && hasFlag("triggerimage");
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
    if (!platform::platform().tracking().isSupported())
        return;
    const bool imagesOnly = wantsImagesOnly();
    {
        const std::lock_guard lock(m_mutex);
        is_realtimemarker = imagesOnly;
    }
    setupWithTriggers(imagesOnly ? imageConfiguration() : worldConfiguration(), width, height);
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

void ARKitMarkerlessProcessor::setupWithTriggers(ArConfiguration configuration, int width, int height) {
    const auto triggers = KestrinTriggerList::getInstance();
    if (triggers->isReady()) {
        configuration.images = triggers->getARKitTriggerSet();
        runSessionWithConfig(configuration, width, height);
        return;
    }
    if (const auto listener = target())
        listener->onTrackingReasonChange(kLoadingTriggers);
    // The list calls this after every load from now on. A load that brings nothing leaves the images of the
    // one before.
    const auto kept = std::make_shared<ArConfiguration>(std::move(configuration));
    triggers->loadForARKit([weak = weak_from_this(), kept, width, height](const TriggerSet& loaded) {
        const auto self = weak.lock();
        const auto listener = self ? self->target() : nullptr;
        if (!listener)
            return;
        if (!loaded.empty())
            kept->images = loaded;
        self->runSessionWithConfig(*kept, width, height);
        listener->onTrackingReasonChange(kTriggersLoaded);
        const std::lock_guard lock(self->m_mutex);
        self->lastTrackingReason = TrackingReason::initializing;
    });
}

void ARKitMarkerlessProcessor::runSessionWithConfig(const ArConfiguration& configuration, int width,
                                                    int height) {
    {
        const std::lock_guard lock(m_mutex);
        is_setup = true;
    }
    session->run(configuration, kResetTracking | kRemoveExistingAnchors);
    if (const auto listener = target())
        sendStarted(*listener);
    bool sized = false;
    {
        const std::lock_guard lock(m_mutex);
        sized = init_width != 0 && init_height != 0;
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

void ARKitMarkerlessProcessor::sendStarted(CVManagerDelegate& listener) {
    if (isFullMarkerTrackingSupported()) {
        listener.onTriggerClear();
        listener.onTriggerStarted();
    } else {
        listener.onPlaneClear();
        listener.onPlaneStarted();
    }
}

} // namespace kestrin
