#include "linux/capture/CameraFinder.h"

#include "linux/capture/FileProbe.h"
#include "linux/capture/V4l2Controls.h"

#include <string_view>
#include <utility>

namespace kestrin::gtk {

namespace {

using Clock = std::chrono::steady_clock;
using Weak = std::weak_ptr<CameraFinder>;

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

/// The device file, under the names that the finders have for it.
std::string pathOf(GstDevice* device) {
    const GOwned<GstStructure, gst_structure_free> properties(gst_device_get_properties(device));
    for (const char* name : {"device.path", "api.v4l2.path"})
        if (const char* path = properties ? gst_structure_get_string(properties.get(), name) : nullptr)
            return path;
    return {};
}

CameraDescription describe(GstDevice* device) {
    const GText name(gst_device_get_display_name(device));
    const std::string path = pathOf(device);
    return {.name = name ? name.get() : "camera",
            .makeSource = [kept = GRef<GstDevice>::ref(
                               device)] { return gst_device_create_element(kept.get(), nullptr); },
            .offered = GstCapsPtr(gst_device_get_caps(device)),
            .devicePath = path,
            .canFocus = V4l2Controls(path).canFocusContinuously()};
}

std::shared_ptr<const CameraDescription> kept(CameraDescription camera) {
    return std::make_shared<const CameraDescription>(std::move(camera));
}

} // namespace

std::shared_ptr<CameraFinder> CameraFinder::make(std::string camera, platform::Dispatch& dispatch) {
    std::shared_ptr<platform::SerialQueue> queue = dispatch.makeSerialQueue("camera_search");
    const auto end = [queue](CameraFinder* finder) { queue->async([finder] { delete finder; }); };
    return {new CameraFinder(std::move(camera), queue), end};
}

CameraFinder::CameraFinder(std::string camera, std::shared_ptr<platform::SerialQueue> queue)
    : m_camera(std::move(camera)), m_queue(std::move(queue)) {}

CameraFinder::~CameraFinder() { stopWatching(); }

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
        if (std::exchange(m_isAsked, true))
            return;
    }
    later(&CameraFinder::look);
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

void CameraFinder::later(void (CameraFinder::*step)()) {
    m_queue->async([weak = weak_from_this(), step] {
        if (const auto self = weak.lock())
            (self.get()->*step)();
    });
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
        watchDevices();
}

// Always a new monitor: one that was connected to a PipeWire daemon does not see it go, nor come back.
void CameraFinder::watchDevices() {
    stopWatching();
    m_monitor = GRef<GstDeviceMonitor>::adopt(gst_device_monitor_new());
    gst_device_monitor_add_filter(m_monitor.get(), "Video/Source", nullptr);
    const auto bus = GRef<GstBus>::adopt(gst_device_monitor_get_bus(m_monitor.get()));
    const auto hear = [](GstBus*, GstMessage* message, gpointer weak) {
        if (const auto self = static_cast<Weak*>(weak)->lock())
            self->later(&CameraFinder::listDevices);
        gst_message_unref(message);
        return GST_BUS_DROP;
    };
    gst_bus_set_sync_handler(bus.get(), hear, new Weak(weak_from_this()),
                             [](gpointer weak) { delete static_cast<Weak*>(weak); });
    gst_device_monitor_start(m_monitor.get());
    listDevices();
}

void CameraFinder::listDevices() {
    CameraDescriptions found;
    GList* devices = gst_device_monitor_get_devices(m_monitor.get());
    for (GList* device = devices; device; device = device->next)
        found.push_back(kept(describe(GST_DEVICE(device->data))));
    g_list_free_full(devices, gst_object_unref);
    publish(camerasNamed(found, m_camera));
}

void CameraFinder::stopWatching() {
    if (!m_monitor)
        return;
    gst_device_monitor_stop(m_monitor.get());
    const auto bus = GRef<GstBus>::adopt(gst_device_monitor_get_bus(m_monitor.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
    m_monitor.reset();
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
