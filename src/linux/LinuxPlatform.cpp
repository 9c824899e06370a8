#include "linux/LinuxPlatform.h"

#include "linux/NoTracking.h"
#include "linux/capture/GstCapture.h"
#include "linux/drawing/GlGpu.h"
#include "linux/network/SoupHttpClient.h"
#include "linux/permission/DesktopPermissions.h"
#include "linux/reachability/NetlinkReachability.h"
#include "linux/storage/BundleStorage.h"
#include "linux/storage/DeviceInfo.h"
#include "linux/storage/PixbufCodec.h"
#include "linux/toolkit/DebugTopics.h"
#include "linux/toolkit/DesktopApplication.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "linux/toolkit/StructuredLog.h"
#include "linux/toolkit/ViewToolkit.h"
#include "linux/vision/ZxingVision.h"
#include "linux/web/WebKitToolkit.h"
#include "platform/CertificatePolicy.h"

#include <string_view>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr double kFeatureLevel = 12.0;
#ifdef NDEBUG
constexpr bool kIsShipped = true;
#else
constexpr bool kIsShipped = false;
#endif

WebOptions webOptions(const Options& options) {
    const auto cache = std::filesystem::path(g_get_user_cache_dir()) /
                       applicationDirectory(options.applicationId).filename() / "web";
    return {(applicationDirectory(options.applicationId) / "web").string(), cache.string(), kFeatureLevel,
            options.developerExtras.value_or(!kIsShipped)};
}

/// A person can be stricter than the application, never laxer.
void obeyTrustVariable() {
    const char* const wanted = g_getenv("KESTRIN_STRICT_TLS");
    if (wanted && *wanted && std::string_view(wanted) != "0")
        platform::certificatePolicy = platform::CertificatePolicy::strict;
}

/// A source of tracking without a camera needs no permission for one.
DesktopPermissions::Options permissionOptions(const Options& options) {
    return {!options.trackingUsesCamera || options.granted.contains("camera"),
            options.granted.contains("photos"),
            {}};
}

} // namespace

// In the order in which each may need the ones before it, while it is made and while it ends.
struct LinuxPlatform::Parts {
    explicit Parts(const Options& options)
        : log(std::make_shared<StructuredLog>(options.logLevel)), dispatch(log),
          web(log, webOptions(options)),
          application({options.orientation, options.screenSize}, dispatch, log),
          views(*log, [this](GtkWidget* root,
                             const platform::Size& size) { application.rootAllocated(root, size); }),
          capture({options.camera, options.mirrorsCamera}, dispatch, log), gpu(log),
          http(dispatch, {.hostMap = options.hostMap, .log = log}),
          reachability({.hostMap = options.hostMap}), storage(options.bundle, options.applicationId, *log),
          permissions(DesktopPermissions::make(
              permissionOptions(options), PermissionFile::ofApplication(options.applicationId),
              [this](const Question& question, auto answer) { application.ask(question, std::move(answer)); },
              dispatch, log)),
          device(readDevice(options.applicationId)) {}

    const std::shared_ptr<StructuredLog> log;
    MainLoopDispatch dispatch;
    WebKitToolkit web;
    DesktopApplication application;
    ViewToolkit views;
    PixbufCodec images;
    GstCapture capture;
    GlGpu gpu;
    ZxingVision vision;
    SoupHttpClient http;
    NetlinkReachability reachability;
    BundleStorage storage;
    const std::shared_ptr<DesktopPermissions> permissions;
    const platform::Device device;
    std::shared_ptr<platform::WorldTracking> tracking;
};

std::shared_ptr<LinuxPlatform> LinuxPlatform::make(const Options& options) {
    StructuredLog log(options.logLevel);
    if (!gtk_init_check() || !gdk_display_get_default()) {
        log.write("Kestrin - There is no display.");
        return nullptr;
    }
    beginDebugging(options.logLevel, log);
    obeyTrustVariable();
    auto parts = std::make_unique<Parts>(options);
    if (options.worldTracking)
        parts->tracking = options.worldTracking(parts->application.interfaceOrientation());
    if (!parts->tracking)
        parts->tracking = std::make_shared<NoTracking>();
    return std::shared_ptr<LinuxPlatform>(new LinuxPlatform(std::move(parts)));
}

LinuxPlatform::LinuxPlatform(std::unique_ptr<Parts> parts) : m_parts(std::move(parts)) {}

LinuxPlatform::~LinuxPlatform() = default;

platform::Dispatch& LinuxPlatform::dispatch() { return m_parts->dispatch; }
platform::LogSink& LinuxPlatform::log() { return *m_parts->log; }
platform::ViewToolkit& LinuxPlatform::views() { return m_parts->views; }
platform::Application& LinuxPlatform::application() { return m_parts->application; }
platform::ImageCodec& LinuxPlatform::images() { return m_parts->images; }
platform::WebToolkit& LinuxPlatform::web() { return m_parts->web; }
platform::WorldTracking& LinuxPlatform::tracking() { return *m_parts->tracking; }
platform::CaptureSystem& LinuxPlatform::capture() { return m_parts->capture; }
platform::Gpu& LinuxPlatform::gpu() { return m_parts->gpu; }
platform::Vision& LinuxPlatform::vision() { return m_parts->vision; }
platform::HttpClient& LinuxPlatform::http() { return m_parts->http; }
platform::ReachabilityTargets& LinuxPlatform::reachability() { return m_parts->reachability; }
platform::Storage& LinuxPlatform::storage() { return m_parts->storage; }
platform::Permissions& LinuxPlatform::permissions() { return *m_parts->permissions; }
platform::Device LinuxPlatform::device() const { return m_parts->device; }
double LinuxPlatform::featureLevel() const { return kFeatureLevel; }

void LinuxPlatform::willTerminate() { m_parts->application.terminate(); }

} // namespace kestrin::gtk
