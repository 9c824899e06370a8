#include "bridge/KestrinWebView.h"
#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "tracking/CompressorUtil.h"

namespace kestrin {

using platform::Matrix;
using platform::Size;

namespace {

constexpr double kTimestampScale = 0.001;

const char* wordFor(int reason) {
    switch (reason) {
    case 1:
        return "Init";
    case 2:
        return "Relocalizing";
    case 3:
        return "ExcessiveMotion";
    case 4:
        return "InsufficientFeatures";
    case 5:
        return "LoadingImageTrackers";
    default:
        return "Normal";
    }
}

} // namespace

void KestrinView::onMarkerFound(const std::string&) { log("KestrinView - onMarkerFound - DEPRECATED."); }

void KestrinView::onMarkerLost(const std::string&) { log("KestrinView - onMarkerLost - DEPRECATED."); }

void KestrinView::onMarkerTracked(const std::string&, const Matrix&, const Matrix& view, double timestamp) {
    evaluate(
        format("window.__KRJ_Native_IN.onPose(atob('%@'));",
               CompressorUtil::compressMatrixAsPoseTsToBitString(view, float(timestamp * kTimestampScale))));
}

void KestrinView::onUpdateProjectionMatrix(const Matrix& projection) {
    evaluate(format("window.__KRJ_Native_IN.onProj(atob('%@'));",
                    CompressorUtil::compressMatrixToBitString(projection)));
}

void KestrinView::onUpdateViewport(const Size& viewport) {
    evaluate(format("window.__KRJ_Native_IN.onViewportUpdate(%f,%f);", viewport.width, viewport.height));
    resize(viewport.width / 2, viewport.height / 2);
    platform::Dispatch& dispatch = platform::platform().dispatch();
    if (dispatch.isMain())
        return;
    // The resize waits on main, maybe behind one that the toolkit has asked for since.
    dispatch.mainAsync([weakly = weak()] {
        if (const auto self = weakly.lock())
            self->followToolkit();
    });
}

void KestrinView::onTriggerStarted() { evaluate("window.__KRJ_Native_IN.onTriggerStart();"); }

void KestrinView::onTriggerAdded(const std::string& name, const Matrix& pose, float width, float height) {
    onTriggerUpdated(name, pose, width, height);
}

void KestrinView::onTriggerUpdated(const std::string& name, const Matrix& pose, float width, float height) {
    evaluate(format("window.__KRJ_Native_IN.onTriggerUpdate('%@', atob('%@'), %f, %f);", name,
                    CompressorUtil::compressMatrixAsPoseToBitString(pose), width, height));
}

void KestrinView::onTriggerRemoved(const std::string& name) {
    // A locked trigger stays in the scene once it was found.
    if (!KestrinFeatureFlags::getInstance()->containsFlag("triggerlock"))
        evaluate(format("window.__KRJ_Native_IN.onTriggerRemove('%@');", name));
}

void KestrinView::onTriggerClear() { evaluate("window.__KRJ_Native_IN.onTriggerClear();"); }

void KestrinView::onPlaneStarted() { evaluate("window.__KRJ_Native_IN.onPlaneStart();"); }

void KestrinView::onPlaneAdded(const std::string& identifier, const Matrix& pose, float width, float height) {
    onPlaneUpdated(identifier, pose, width, height);
}

void KestrinView::onPlaneUpdated(const std::string& identifier, const Matrix& pose, float width,
                                 float height) {
    evaluate(format("window.__KRJ_Native_IN.onPlaneUpdate('%@', atob('%@'), %f, %f);", identifier,
                    CompressorUtil::compressMatrixAsPoseToBitString(pose), width, height));
}

void KestrinView::onPlaneGeometryUpdated(const std::string& identifier, const Vertices& vertices,
                                         int verticesCount, const Indices& indices, int indicesCount) {
    evaluate(format("window.__KRJ_Native_IN.onPlaneGeometry('%@', atob('%@'), atob('%@'));", identifier,
                    CompressorUtil::compressVector3ArrayToBitString(vertices.get(), verticesCount),
                    CompressorUtil::compressShortArrayToBitString(indices.get(), indicesCount)));
}

void KestrinView::onPlaneRemoved(const std::string& identifier) {
    evaluate(format("window.__KRJ_Native_IN.onPlaneRemove('%@');", identifier));
}

void KestrinView::onPlaneClear() { evaluate("window.__KRJ_Native_IN.onPlaneClear();"); }

void KestrinView::onLightEstimate(float estimate) {
    evaluate(format("window.__KRJ_Native_IN.onLightEstimate(atob('%@'));",
                    CompressorUtil::compressFloatToBitString(estimate)));
}

void KestrinView::onTrackingReasonChange(int reason) {
    const auto web = held(m_WebView);
    if (web && reason == 1)
        web->show();
    if (web && reason == 5)
        web->hide();
    evaluate(format("window.__KRJ_Native_IN.onTrackingReasonChange('%@');", wordFor(reason)));
}

} // namespace kestrin
