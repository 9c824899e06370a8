#pragma once

#include "core/config/KestrinSettings.h"
#include "platform/Dispatch.h"
#include "platform/NotificationCenter.h"
#include "platform/View.h"
#include "tracking/CVManagerDelegate.h"

#include <boost/json/fwd.hpp>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace kestrin {

class AppJSONStack;
class CVManager;
class ErrorPreviewView;
class KestrinAppBridge;
class KestrinNavigator;
class KestrinTriggerList;
class KestrinWebEventController;
class KestrinWebView;
class SdkLoadingView;

/// The view that a host application embeds: the camera picture, the page above it, and the overlays. It owns
/// the parts of the system and carries what tracking finds to the page and what the page commands to
/// tracking.
///
/// Thread: main, unless said otherwise; operations marked "any, diverted" post themselves to main when called
/// elsewhere, say so in the log, and return at once.
class KestrinView : public platform::View, public CVManagerDelegate {
  public:
    using EventCallback = std::function<void(const boost::json::object& data)>;

    /// What a start waits for.
    enum class StartDelay {
        server,            ///< the feature flags, which have not come yet
        unreachableServer, ///< it has not answered; only another `setup` asks it again
        cameraAccess,      ///< the person's answer
        page               ///< to load, and to say that it is ready
    };
    using DelayCallback = std::function<void(std::optional<StartDelay> delay)>;

    /// A hidden view of the screen's size.
    static std::shared_ptr<KestrinView> init();
    ~KestrinView() override;

    /// Whether this device can track. Thread: any.
    static bool isSupported();
    /// The host application's version; none when its bundle names none. Thread: any.
    static std::optional<std::string> getVersion();

    /// Prepares everything for `start`; none gives the default settings. May be called again. Thread: any,
    /// diverted.
    void setup(const std::optional<KestrinSettings>& settings);
    /// Lets go of the page and pauses; `setup` makes the view usable again. Thread: any, diverted.
    void destroy();
    /// Asks for what is needed, loads the page and shows the view. Thread: any, diverted.
    void start() { startWithCallback(nullptr); }
    /// `failed` is called on main when the start fails, and never when it succeeds.
    void startWithCallback(std::function<void()> failed);
    /// `callback` is called on main when a start has waited for one thing for 8 seconds, which the loading
    /// overlay then says too, and with none when it goes on, fails or is given up.
    void onStartDelayed(DelayCallback callback) { m_startDelayed = std::move(callback); }
    /// Puts the layers in, or takes them out, bottom to top. Thread: any, diverted.
    void show();
    void hide();
    /// The host pauses and resumes: the page is told, and its engine commands are ignored meanwhile. Thread:
    /// any.
    void pause();
    void resume();

    /// Points. A hidden view becomes shown. Thread: any, diverted, as for the next two.
    void resize(double width, double height);
    /// The main screen's size times its native scale.
    void resizeToScreenSize();
    /// The main screen's size; called off main, the scaled size.
    void resizeToScreenSizeUnscaled();
    /// The toolkit's size wins over the frame: a new one is posted to `resize` while the view is shown.
    void toolkitResized(const platform::Size& size) override;

    /// Registers the page's commands and the application's notifications, once until `destroy`.
    void registerCallbacks();
    /// The host's own handler of a web event, by its number.
    void registerForEventCallback(std::int32_t event, EventCallback callback);

    /// Null before the first successful start.
    std::shared_ptr<platform::View> getCameraView() const;
    /// Null before the first successful start.
    std::shared_ptr<platform::View> getContentView() const;
    std::shared_ptr<platform::View> getParentView();
    /// Drives the page there is now, if any; a new one at each call. Thread: any.
    std::shared_ptr<KestrinNavigator> getNavigator() const;
    /// Opens objects of the application set up last; null before `setup`.
    std::shared_ptr<KestrinAppBridge> getAsyncBridge() const { return m_AppBridge; }

    /// Thread: any, diverted without a word.
    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void removeFromParentView();
    void clipToParent();

    void appWillResignActive(const platform::Notification& notification);
    void appActivated(const platform::Notification& notification);
    void appDeactivated(const platform::Notification& notification);
    void appWillTerminate(const platform::Notification& notification);

    /// True while a prompt for the photo library stands in front of the application: the page is then not
    /// told that the application resigned or became active.
    static inline bool isPhotoAccessMinimize = false;

    // What tracking finds becomes one script call each. Thread: any.
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

  private:
    template <class T, class... Arguments>
    friend std::shared_ptr<T> platform::makeView(Arguments&&... arguments);
    struct Handlers;

    KestrinView();
    void construct();
    std::shared_ptr<KestrinView> shared();
    std::weak_ptr<KestrinView> weak();
    /// A field that several threads read. Thread: any.
    template <class Part>
    std::shared_ptr<Part> held(const std::shared_ptr<Part>& field) const {
        const std::lock_guard lock(m_mutex);
        return field;
    }
    template <class Part>
    void hold(std::shared_ptr<Part>& field, std::shared_ptr<Part> part) {
        const std::lock_guard lock(m_mutex);
        field.swap(part);
    }

    /// Dropped while there is no page. Thread: any.
    void evaluate(std::string script);
    void syncFeatureFlags();
    void observeApplication();
    void ignoreApplication();
    void loadTriggers(const std::function<void()>& failed);
    void askForCamera(const std::function<void()>& failed);
    void launch();
    void makeManager();
    void recoverPage();
    void failStart(const char* title, const char* body, const std::function<void()>& failed);
    void waitFor(std::optional<StartDelay> what);
    void reportWait();
    void tellDelay(std::optional<StartDelay> delay);
    void followToolkit();
    /// The overlay of the loading triggers; none on systems without.
    static std::shared_ptr<KestrinTriggerList> triggerOverlay();
    template <class Action>
    void obeyPage(const char* acting, const char* ignored, Action action);

    // The page's commands, each with the whole message.
    void onDeviceInfo(const boost::json::object& event);
    void onWebGLReady(const boost::json::object& event);
    void onStartAREngine(const boost::json::object& event);
    void onStopAREngine(const boost::json::object& event);
    void onPauseAREngine(const boost::json::object& event);
    void onResumeAREngine(const boost::json::object& event);
    void onOpenExternalUrl(const boost::json::object& event);
    void onRequestApplication(const boost::json::object& event);
    void onForceLoseTracking(const boost::json::object& event);
    void onCaptureScreenshot(const boost::json::object& event);
    void onCaptureScreenshotPermissionless(const boost::json::object& event);
    void onShare(const boost::json::object& event);
    void onStartMarkerless(const boost::json::object& event);
    void onStartMarkerlessPlacement(const boost::json::object& event);
    void onScanMarker(const boost::json::object& event);
    void onScanMarkerSnap(const boost::json::object& event);
    void onChangeApp(const boost::json::object& event);
    void onStartQRScanner(const boost::json::object& event);
    void onStopQRScanner(const boost::json::object& event);

    // The ways to find out what the camera sees, and the answer.
    void qrSnap();
    void nativeSnap(int attempt);
    void serverSnap(const boost::json::object& event);
    void answerServerSnap(std::optional<boost::json::value> answer);
    void sendScanResult(boost::json::value rawData, boost::json::value error);
    std::string lookUpAddress(const boost::json::object& event, const char* path) const;

    mutable std::mutex m_mutex; ///< guards the next three
    std::shared_ptr<CVManager> m_CV;
    std::shared_ptr<KestrinWebEventController> m_EventController;
    std::shared_ptr<KestrinWebView> m_WebView;

    std::shared_ptr<AppJSONStack> m_JsonStack;
    KestrinSettings m_Settings;
    std::shared_ptr<KestrinAppBridge> m_AppBridge;
    bool m_isEventRegistered = false;
    std::atomic<bool> m_isUserPaused = false;   ///< the host paused
    std::atomic<bool> m_isSystemPaused = false; ///< the page paused or stopped the engine
    bool m_isHidden = false;
    std::shared_ptr<SdkLoadingView> sdkLoadingView;
    std::shared_ptr<ErrorPreviewView> errorPreviewView;
    std::optional<std::string> change_from, change_into; ///< application ids of the last change
    std::optional<double> m_pageLostAt;                  ///< when; on the dispatch's clock
    std::optional<StartDelay> m_waitsFor;                ///< what a start waits for
    std::optional<StartDelay> m_delay;                   ///< what has been told to take too long
    std::unique_ptr<platform::RepeatingTimer> m_patience;
    DelayCallback m_startDelayed;
    platform::Size m_toolkitSize; ///< zero before the toolkit gave one
};

} // namespace kestrin
