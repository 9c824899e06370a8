#include "linux/capture/FileProbe.h"

#include "linux/capture/GstParts.h"

#include <gst/pbutils/pbutils.h>

namespace kestrin::gtk {

namespace {

constexpr GstClockTime kLongestLook = 5 * GST_SECOND;

} // namespace

std::string faultOfVideo(const std::string& path) {
    if (!gstreamerIsReady())
        return "GStreamer cannot be used";
    GFailure failure;
    const GText address(gst_filename_to_uri(path.c_str(), failure.out()));
    const auto discoverer =
        GRef<GstDiscoverer>::adopt(address ? gst_discoverer_new(kLongestLook, failure.out()) : nullptr);
    if (!discoverer)
        return failure.text();
    const auto info = GRef<GstDiscovererInfo>::adopt(
        gst_discoverer_discover_uri(discoverer.get(), address.get(), failure.out()));
    if (failure.error())
        return failure.text();
    GList* videos = info ? gst_discoverer_info_get_video_streams(info.get()) : nullptr;
    const bool hasVideo = videos != nullptr;
    gst_discoverer_stream_info_list_free(videos);
    return hasVideo ? "" : "it holds no pictures";
}

} // namespace kestrin::gtk
