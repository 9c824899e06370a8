#pragma once

#include "camera/CameraFrameProvider.h"
#include "camera/ListenerList.h"
#include "platform/ArSession.h"
#include "platform/Dispatch.h"
#include "tracking/CVManagerDelegate.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace kestrin {

/// Runs the world-tracking session, turns what it reports into tracking events for one target, and hands its
/// camera pictures to consumers. Events leave on the thread that caused them: session for frames and anchors,
/// the caller's for what an operation causes, main for the light estimate. Operations: any thread; no state
/// is locked while the target or a consumer is called, so they may call back.
class ARKitMarkerlessProcessor : public CameraFrameProvider,
                                 public platform::ArSessionDelegate,
                                 public std::enable_shared_from_this<ARKitMarkerlessProcessor> {
  public:
    static bool isSupported();
    /// Whether image triggers can be found at all.
    static bool isMarkerTrackingSupported();
    /// Whether image triggers are what is reported, instead of planes. It follows the feature flags.
    static bool isFullMarkerTrackingSupported();

    /// The target is kept alive until `detach`; `keys` is not consulted.
    static std::shared_ptr<ARKitMarkerlessProcessor>
    initWithDelegate(std::shared_ptr<CVManagerDelegate> target, const void* keys);
    ~ARKitMarkerlessProcessor() override;

    /// Chooses the configuration by feature flags and runs the session afresh, if need be once the image
    /// triggers are there; pixels.
    void setup(int width, int height);
    /// Begins tracking; before setup has finished it is remembered and done then.
    void start();
    void stop();
    /// Stops tracking and the session; does not wait for a frame that is being delivered.
    void pause();
    /// Sets up again at the present size, then starts.
    void reset();
    /// Runs on with the anchors forgotten.
    void resetContext();
    /// Placement happens in the page; this only says so in the log.
    void startPlacement();
    /// Sends nothing any more and lets go of the target.
    void detach();

    /// Pixels.
    void setViewport(int width, int height);
    void updateProjectionMatrix();
    void updateProjectionMatrixWith(int width, int height);
    /// Follows the interface orientation.
    void updateUIOrientationMatrix();
    void sendLightingInfo();
    /// The name of the image trigger seen within the viewport, the nearest one; none when there is none.
    std::optional<std::string> snapMarker() const;

    void initialiseCamera() override { cameraEnabled = false; }
    void startCamera() override { cameraEnabled = true; }
    void stopCamera() override { cameraEnabled = false; }
    void addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) override;
    void removeDelegate(const CameraFrameConsumer& consumer) override { delegates.remove(consumer); }
    void removeDelegates() override { delegates.clear(); }
    platform::AffineTransform getOrientationWithViewport(const platform::Size& viewport) const override;

    void didUpdateFrame(const std::shared_ptr<const platform::ArFrame>& frame) override;
    void didAddAnchors(const platform::ArAnchors& anchors) override;
    void didUpdateAnchors(const platform::ArAnchors& anchors) override;
    void didRemoveAnchors(const platform::ArAnchors& anchors) override;

    ListenerList<CameraFrameConsumer> delegates;
    /// Null on systems without world tracking; never replaced.
    std::shared_ptr<platform::ArSession> session;

  private:
    /// Tells of an added or updated anchor.
    using AnchorOperation = void (CVManagerDelegate::*)(const std::string&, const platform::Matrix&, float,
                                                        float);

    explicit ARKitMarkerlessProcessor(std::shared_ptr<CVManagerDelegate> target);

    std::shared_ptr<CVManagerDelegate> target() const;
    void scheduleLightUpdate();
    void setupWithTriggers(platform::ArConfiguration configuration, int width, int height);
    static void sendStarted(CVManagerDelegate& listener);
    void runSessionWithConfig(const platform::ArConfiguration& configuration, int width, int height);
    void sendPose(const platform::ArFrame& frame);
    void sendPicture(const platform::ArFrame& frame);
    void sendReason(platform::TrackingReason reason);
    platform::ArAnchors forgetLost(const platform::ArAnchors& anchors) const;
    void sendTriggers(const platform::ArAnchors& anchors, AnchorOperation operation) const;
    void sendPlanes(const platform::ArAnchors& anchors, AnchorOperation operation) const;

    std::atomic<bool> cameraEnabled = false;
    std::atomic<float> lightEstimate = 1;

    mutable std::mutex m_mutex; ///< guards the rest
    std::shared_ptr<CVManagerDelegate> _tracker_callback;
    platform::Matrix projection_matrix = platform::Matrix::identity();
    platform::Matrix ui_orientation_matrix = platform::Matrix::identity();
    int init_width = 0, init_height = 0;
    int last_projection_width = 0, last_projection_height = 0;
    bool viewportChanged = true;
    bool is_setup = false, is_start = false, is_lightupdate = false, is_realtimemarker = false;
    std::string _currentTracker; ///< empty while stopped
    int last_orientation = 0;
    platform::TrackingReason lastTrackingReason = platform::TrackingReason::none;
    std::unique_ptr<platform::RepeatingTimer> m_lightTimer;
};

} // namespace kestrin
