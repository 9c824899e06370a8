#pragma once

#include "bridge/PageFrameListener.h"
#include "camera/ListenerList.h"
#include "platform/Image.h"
#include "platform/View.h"
#include "tracking/CVManagerDelegate.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace kestrin {

class ARKitMarkerlessProcessor;
class CameraFrameProvider;
class YUVCameraManager;

/// Drives tracking and the camera picture, and relays every tracking event to its listeners. Without world
/// tracking it has neither a processor nor a presenter, and every command does nothing. Thread: any, unless
/// said otherwise.
class CVManager : public CVManagerDelegate,
                  public PageFrameListener,
                  public std::enable_shared_from_this<CVManager> {
  public:
    /// Sets the session up; what that reports reaches nobody. `keys` is not consulted. Thread: main.
    static std::shared_ptr<CVManager> initWithKeys(const void* keys);
    ~CVManager() override;

    static bool checkARKitSupport();
    static bool checkARKitImageTrackerSupport();

    void reset();
    /// Forgets what the session has found, and goes on.
    void cleanContext();
    /// The name of the image trigger in view; none when there is none.
    std::optional<std::string> snapMarker() const;
    void startMarkerlessTracking();
    void startMarkerlessPlacement();
    void stopMarkerlessTracking();
    void startCamera();
    void stopCamera();
    void pause();
    /// Starts the camera and sets up again.
    void resume();
    /// Ends tracking and drawing for good, so that manager and processor no longer keep each other alive.
    void detach();

    /// Whether events are posted to main instead of being delivered on the thread that reports them.
    void setCallbacksOnMainThread(bool onMain) { doCallbacksOnUIThread = onMain; }
    /// Listeners are not kept alive; they are told in the order added.
    void addDelegate(const std::shared_ptr<CVManagerDelegate>& listener);
    /// Asked for, but the listener stays in the list; see ListenerList.
    void removeDelegate(const CVManagerDelegate& listener) { callback_delegates.remove(listener); }
    void removeAllDelegates() { callback_delegates.clear(); }

    /// The camera picture; null without world tracking.
    std::shared_ptr<platform::View> getRenderView() const;
    /// These post themselves to main when called elsewhere. The viewport becomes twice the parent's size.
    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void clipToParent();
    void removeFromParentView();
    /// Pixels.
    void setViewport(const platform::Size& size);

    /// The camera picture's view, points. Thread: main, as for the next three.
    platform::Size getViewportSize() const;
    platform::Size getScreenSize() const; ///< device pixels
    platform::Size getScreenSizeUnscaled() const;
    bool isRetinaDisplay() const;

    /// The camera picture as it is shown, in the display's pixels; absent without world tracking. Thread:
    /// main, as for the next.
    platform::Image getScreenshot() const;
    /// The same 480 pixels wide.
    platform::Image getScreenshotLowRes() const;

    /// The page has drawn: lets one camera picture through.
    void signal() override;

    void onMarkerFound(const std::string& name) override;
    void onMarkerLost(const std::string& name) override;
    void onMarkerTracked(const std::string& name, const platform::Matrix& mvp, const platform::Matrix& view,
                         double timestamp) override;
    void onUpdateProjectionMatrix(const platform::Matrix& projection) override;
    void onUpdateViewport(const platform::Size& viewport) override;
    void onTriggerStarted() override;
    void onTriggerAdded(const std::string& name, const platform::Matrix& pose, float width,
                        float height) override;
    void onTriggerUpdated(const std::string& name, const platform::Matrix& pose, float width,
                          float height) override;
    void onTriggerRemoved(const std::string& name) override;
    void onTriggerClear() override;
    void onPlaneStarted() override;
    void onPlaneAdded(const std::string& identifier, const platform::Matrix& pose, float width,
                      float height) override;
    void onPlaneUpdated(const std::string& identifier, const platform::Matrix& pose, float width,
                        float height) override;
    void onPlaneGeometryUpdated(const std::string& identifier, const Vertices& vertices, int verticesCount,
                                const Indices& indices, int indicesCount) override;
    void onPlaneRemoved(const std::string& identifier) override;
    void onPlaneClear() override;
    void onLightEstimate(float estimate) override;
    void onTrackingReasonChange(int reason) override;

    ListenerList<CVManagerDelegate> callback_delegates;

  private:
    CVManager();
    void construct(const void* keys);
    template <class Event>
    void relay(Event event);

    // Set while constructing, never changed afterwards.
    std::shared_ptr<YUVCameraManager> camera_manager;
    std::shared_ptr<ARKitMarkerlessProcessor> markerless_process;
    std::shared_ptr<CameraFrameProvider> camera_provider;

    std::atomic<bool> doCallbacksOnUIThread = false;
    /// Detail events pass only between a Started and the next Clear of their kind.
    std::atomic<bool> sendPlaneUpdates = false;
    std::atomic<bool> sendTriggerUpdates = false;
};

} // namespace kestrin
