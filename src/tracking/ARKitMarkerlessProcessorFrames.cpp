#include "tracking/ARKitMarkerlessProcessor.h"

#include "services/KestrinQRScanner.h"
#include "services/util/SystemLevel.h"
#include "tracking/Geometry.h"

#include <optional>

namespace kestrin {

using namespace platform;

namespace {

constexpr double kFullLight = 0.00025; // per lumen

/// In [0, 1]; what is not a number is dark.
float brightness(double ambientIntensity) {
    const double light = ambientIntensity * kFullLight;
    return float(light > 0 ? (light < 1 ? light : 1) : 0);
}

std::optional<int> reasonCode(TrackingReason reason) {
    switch (reason) {
    case TrackingReason::none:
        return 0;
    case TrackingReason::initializing:
        return 1;
    case TrackingReason::excessiveMotion:
        return 3;
    case TrackingReason::insufficientFeatures:
        return 4;
    case TrackingReason::relocalizing:
        return systemIsAtLeast(11.3) ? std::optional(2) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

void ARKitMarkerlessProcessor::didUpdateFrame(const std::shared_ptr<const ArFrame>& frame) {
    if (!cameraEnabled || !systemIsAtLeast(11.0))
        return;
    const TrackingReason reason = frame->camera ? frame->camera->trackingReason() : TrackingReason::none;
    updateUIOrientationMatrix();
    sendPose(*frame);
    lightEstimate = brightness(frame->ambientIntensity.value_or(0));
    sendPicture(*frame);
    sendReason(reason);
}

void ARKitMarkerlessProcessor::sendPose(const ArFrame& frame) {
    Matrix turn;
    std::string tracker;
    {
        const std::lock_guard lock(m_mutex);
        turn = ui_orientation_matrix;
        tracker = _currentTracker;
    }
    const Matrix pose = frame.camera ? calc_view_unscaled(frame.camera->transform(), turn) : Matrix{};
    if (const auto listener = target())
        listener->onMarkerTracked(tracker, pose, pose, frame.timestamp);
}

void ARKitMarkerlessProcessor::sendPicture(const ArFrame& frame) {
    int width = 0;
    int height = 0;
    {
        const std::lock_guard lock(m_mutex);
        width = init_width;
        height = init_height;
    }
    delegates.forEach([&](CameraFrameConsumer& consumer) {
        consumer.cameraFrameReceivedWithBuffer(frame.capturedImage, 0.0, width, height);
    });
    const auto scanner = KestrinQRScanner::getInstance();
    if (scanner->wantsScan())
        scanner->onScan(frame.capturedImage, PictureOrientation::up);
}

void ARKitMarkerlessProcessor::sendReason(TrackingReason reason) {
    {
        const std::lock_guard lock(m_mutex);
        if (reason == lastTrackingReason)
            return;
        lastTrackingReason = reason;
    }
    const auto code = reasonCode(reason);
    const auto listener = target();
    if (code && listener)
        listener->onTrackingReasonChange(*code);
}

} // namespace kestrin
