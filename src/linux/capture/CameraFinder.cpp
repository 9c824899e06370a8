#include "linux/capture/CameraFinder.h"

#include "linux/capture/CameraTurn.h"
#include "linux/capture/FileProbe.h"
#include "linux/capture/V4l2Controls.h"

#include <string_view>
#include <utility>

namespace kestrin::gtk {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kFilePrefix = "file:";
constexpr const char* kTestFormat = "video/x-raw,format=BGRx,width=640,height=480,framerate=30/1";

GstElement* makeWith(const char* factory, const char* property, const std::string& value) {
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (element)
        gst_util_set_object_arg(G_OBJECT(element), property, value.c_str());
    return element;
}

CameraDescription testCamera() {
    return {.name = "test",
            .makeSource = [] { return makeWith("videotestsrc", "is-live", "true"); },
            .offered = GstCapsPtr(gst_caps_from_string(kTestFormat))};
}

CameraDescription fileCamera(const std::string& path) {
    return {.name = path,
            .makeSource = [path] { return makeWith("filesrc", "location", path); },
            .isLive = false,
            .fault = faultOfVideo(path)};
}

using Properties = GOwned<GstStructure, gst_structure_free>;

std::string textOf(const Properties& properties, const char* name) {
    const char* text = properties ? gst_structure_get_string(properties.get(), name) : nullptr;
    return text ? text : "";
}

CameraDescription describe(GstDevice* device) {
    const GText name(gst_device_get_display_name(device));
    const Properties properties(gst_device_get_properties(device));
    const std::string direct = textOf(properties, "device.path");
    const std::string path = direct.empty() ? textOf(properties, "api.v4l2.path") : direct;
    return {.name = name ? name.get() : "camera",
            .makeSource = [kept = GRef<GstDevice>::ref(
                               device)] { return gst_device_create_element(kept.get(), nullptr); },
            .offered = GstCapsPtr(gst_device_get_caps(device)),
            .devicePath = path,
            .isDirect = !direct.empty(),
            .canFocus = V4l2Controls(path).canFocusContinuously()};
}

std::shared_ptr<const CameraDescription> kept(CameraDescription camera) {
    return std::make_shared<const CameraDescription>(std::move(camera));
}

/// Asks without watching: a watch on PipeWire does not see its daemon go, nor come back, and does not survive
/// it.
CameraDescriptions devices() {
    const auto monitor = GRef<GstDeviceMonitor>::adopt(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    CameraDescriptions found;
    GList* listed = gst_device_monitor_get_devices(monitor.get());
    for (GList* device = listed; device; device = device->next)
        found.push_back(kept(describe(GST_DEVICE(device->data))));
    g_list_free_full(listed, gst_object_unref);
    return oncePerDevice(found);
}

} // namespace

CameraFinder::CameraFinder(std::string camera, platform::Dispatch& dispatch)
    : m_camera(std::move(camera)), m_queue(dispatch.makeSerialQueue("camera_search")) {}

void CameraFinder::begin() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_began != Clock::time_point())
            return;
        m_began = Clock::now();
    }
    lookAgain();
}

void CameraFinder::lookAgain() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_began == Clock::time_point() || std::exchange(m_isAsked, true))
            return;
    }
    m_queue->async([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->look();
    });
}

std::shared_ptr<void> CameraFinder::hold() {
    return {this, [self = shared_from_this(), turn = CameraTurn::hold()](void*) mutable {
                turn.reset();
                if (self->m_isDeferred.exchange(false))
                    self->lookAgain();
            }};
}

void CameraFinder::lose(const CameraDescription& camera) {
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_cameras, [&](const auto& one) {
            return one->name == camera.name && one->devicePath == camera.devicePath;
        });
    }
    lookAgain();
}

CameraDescriptions CameraFinder::cameras() const {
    const std::lock_guard lock(m_mutex);
    return m_cameras;
}

bool CameraFinder::waitForFirstLook(double seconds) const {
    std::unique_lock lock(m_mutex);
    const auto end =
        m_began + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    return m_looked.wait_until(lock, end, [this] { return m_hasLooked; });
}

void CameraFinder::look() {
    {
        const std::lock_guard lock(m_mutex);
        m_isAsked = false;
    }
    if (!gstreamerIsReady())
        publish({});
    else if (m_camera == "test")
        publish({kept(testCamera())});
    else if (m_camera.starts_with(kFilePrefix))
        publish({kept(fileCamera(m_camera.substr(kFilePrefix.size())))});
    else
        lookForDevices();
}

void CameraFinder::lookForDevices() {
    m_isDeferred = true;
    const auto turn = CameraTurn::look();
    if (!turn)
        return;
    m_isDeferred = false;
    publish(camerasNamed(devices(), m_camera));
}

void CameraFinder::publish(CameraDescriptions found) {
    {
        const std::lock_guard lock(m_mutex);
        m_cameras = std::move(found);
        m_hasLooked = true;
    }
    m_looked.notify_all();
}

} // namespace kestrin::gtk
