#include "linux/capture/GstCapture.h"

#include "linux/capture/Within.h"

#include <string_view>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr std::string_view kFilePrefix = "file:";
constexpr const char* kTestFormat = "video/x-raw,format=BGRx,width=640,height=480,framerate=30/1";
constexpr double kLongestSearch = 5; // seconds

GstElement* makeWith(const char* factory, const char* property, const std::string& value) {
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (element)
        gst_util_set_object_arg(G_OBJECT(element), property, value.c_str());
    return element;
}

CameraDescription testCamera() {
    return {"test", [] { return makeWith("videotestsrc", "is-live", "true"); }, true,
            GstCapsPtr(gst_caps_from_string(kTestFormat)), ""};
}

CameraDescription fileCamera(const std::string& path) {
    return {path, [path] { return makeWith("filesrc", "location", path); }, false, nullptr, ""};
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
    return {name ? name.get() : "camera",
            [kept = GRef<GstDevice>::ref(device)] { return gst_device_create_element(kept.get(), nullptr); },
            true, GstCapsPtr(gst_device_get_caps(device)), pathOf(device)};
}

using Descriptions = std::shared_ptr<std::vector<CameraDescription>>;

Descriptions discover() {
    auto found = std::make_shared<std::vector<CameraDescription>>();
    const auto monitor = GRef<GstDeviceMonitor>::adopt(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    GList* devices = gst_device_monitor_get_devices(monitor.get());
    for (GList* device = devices; device; device = device->next)
        found->push_back(describe(GST_DEVICE(device->data)));
    g_list_free_full(devices, gst_object_unref);
    return found;
}

} // namespace

GstCapture::GstCapture(std::string camera, platform::Dispatch& dispatch,
                       std::shared_ptr<platform::LogSink> log)
    : m_camera(std::move(camera)), m_log(std::move(log)),
      m_control(dispatch.makeSerialQueue("camera_control")) {}

std::vector<CameraDescription> GstCapture::find() const {
    std::vector<CameraDescription> found;
    if (m_camera == "test")
        found.push_back(testCamera());
    else if (m_camera.starts_with(kFilePrefix))
        found.push_back(fileCamera(m_camera.substr(kFilePrefix.size())));
    else if (const auto devices = within<Descriptions>(kLongestSearch, *m_control, discover))
        for (CameraDescription& device : **devices) {
            if (m_camera.empty() || m_camera == device.name || m_camera == device.devicePath)
                found.push_back(std::move(device));
        }
    else
        m_log->write("Kestrin - Camera - The search for cameras takes too long.");
    return found;
}

std::vector<std::shared_ptr<platform::CaptureDevice>> GstCapture::backCameras() {
    std::vector<std::shared_ptr<platform::CaptureDevice>> cameras;
    if (!gstreamerIsReady())
        return cameras;
    for (CameraDescription& description : find())
        cameras.push_back(std::make_shared<GstCamera>(std::move(description), m_control, m_log));
    return cameras;
}

} // namespace kestrin::gtk
