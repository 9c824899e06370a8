#include "platform/Platform.h"
#include "services/util/Format.h"
#include "tracking/CVManager.h"

#include <utility>

namespace kestrin {

using platform::Matrix;
using platform::Size;

/// Gates, flag changes and log lines happen on the reporting thread; `event`, which owns what it tells, may
/// run later on main.
template <class Event>
void CVManager::relay(Event event) {
    if (doCallbacksOnUIThread && !platform::platform().dispatch().isMain())
        platform::platform().dispatch().mainAsync([self = shared_from_this(), event = std::move(event)] {
            self->callback_delegates.forEach(event);
        });
    else
        callback_delegates.forEach(event);
}

void CVManager::onMarkerFound(const std::string& name) {
    log("CVManager - onMarkerFound - %@", name);
    relay([name](CVManagerDelegate& to) { to.onMarkerFound(name); });
}

void CVManager::onMarkerLost(const std::string& name) {
    log("CVManager - onMarkerLost - %@", name);
    relay([name](CVManagerDelegate& to) { to.onMarkerLost(name); });
}

void CVManager::onMarkerTracked(const std::string& name, const Matrix& mvp, const Matrix& view,
                                double timestamp) {
    relay([=](CVManagerDelegate& to) { to.onMarkerTracked(name, mvp, view, timestamp); });
}

void CVManager::onUpdateProjectionMatrix(const Matrix& projection) {
    relay([projection](CVManagerDelegate& to) { to.onUpdateProjectionMatrix(projection); });
}

void CVManager::onUpdateViewport(const Size& viewport) {
    relay([viewport](CVManagerDelegate& to) { to.onUpdateViewport(viewport); });
}

void CVManager::onTriggerStarted() {
    sendTriggerUpdates = true;
    log("CVManager - onTriggerStarted");
    relay([](CVManagerDelegate& to) { to.onTriggerStarted(); });
}

void CVManager::onTriggerAdded(const std::string& name, const Matrix& pose, float width, float height) {
    if (!sendTriggerUpdates)
        return;
    log("CVManager - onTriggerAdded - %@", name);
    relay([=](CVManagerDelegate& to) { to.onTriggerAdded(name, pose, width, height); });
}

void CVManager::onTriggerUpdated(const std::string& name, const Matrix& pose, float width, float height) {
    if (sendTriggerUpdates)
        relay([=](CVManagerDelegate& to) { to.onTriggerUpdated(name, pose, width, height); });
}

void CVManager::onTriggerRemoved(const std::string& name) {
    if (!sendTriggerUpdates)
        return;
    log("CVManager - onTriggerRemoved - %@", name);
    relay([name](CVManagerDelegate& to) { to.onTriggerRemoved(name); });
}

void CVManager::onTriggerClear() {
    sendTriggerUpdates = false;
    log("CVManager - onTriggerClear");
    relay([](CVManagerDelegate& to) { to.onTriggerClear(); });
}

void CVManager::onPlaneStarted() {
    sendPlaneUpdates = true;
    log("CVManager - onPlaneStarted");
    relay([](CVManagerDelegate& to) { to.onPlaneStarted(); });
}

void CVManager::onPlaneAdded(const std::string& identifier, const Matrix& pose, float width, float height) {
    if (sendPlaneUpdates)
        relay([=](CVManagerDelegate& to) { to.onPlaneAdded(identifier, pose, width, height); });
}

void CVManager::onPlaneUpdated(const std::string& identifier, const Matrix& pose, float width, float height) {
    if (sendPlaneUpdates)
        relay([=](CVManagerDelegate& to) { to.onPlaneUpdated(identifier, pose, width, height); });
}

void CVManager::onPlaneGeometryUpdated(const std::string& identifier, const Vertices& vertices,
                                       int verticesCount, const Indices& indices, int indicesCount) {
    if (sendPlaneUpdates)
        relay([=](CVManagerDelegate& to) {
            to.onPlaneGeometryUpdated(identifier, vertices, verticesCount, indices, indicesCount);
        });
}

void CVManager::onPlaneRemoved(const std::string& identifier) {
    if (sendPlaneUpdates)
        relay([identifier](CVManagerDelegate& to) { to.onPlaneRemoved(identifier); });
}

void CVManager::onPlaneClear() {
    sendPlaneUpdates = false;
    log("CVManager - onPlaneClear");
    relay([](CVManagerDelegate& to) { to.onPlaneClear(); });
}

void CVManager::onLightEstimate(float estimate) {
    relay([estimate](CVManagerDelegate& to) { to.onLightEstimate(estimate); });
}

void CVManager::onTrackingReasonChange(int reason) {
    relay([reason](CVManagerDelegate& to) { to.onTrackingReasonChange(reason); });
}

} // namespace kestrin
