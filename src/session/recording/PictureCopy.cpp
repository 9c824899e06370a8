#include "session/recording/PictureCopy.h"

#include <algorithm>
#include <cstring>

namespace kestrin::session {

namespace {

std::uint8_t* row(const GstVideoFrame& frame, int plane, int y) {
    return static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
           std::ptrdiff_t(GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane)) * y;
}

} // namespace

GstVideoInfo videoFormat(int width, int height) {
    GstVideoInfo format;
    gst_video_info_set_format(&format, GST_VIDEO_FORMAT_Y42B, guint(width + width % 2), guint(height));
    return format;
}

GstBuffer* toVideo(const Nv12Buffer& picture, const GstVideoInfo& format) {
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, format.size, nullptr);
    GstVideoFrame frame;
    gst_video_frame_map(&frame, &format, buffer, GST_MAP_WRITE);
    const platform::PixelPlane luma = picture.plane(0), colors = picture.plane(1);
    for (int y = 0; y < luma.height; ++y) {
        const std::uint8_t* from = luma.data + std::ptrdiff_t(luma.stride) * y;
        std::uint8_t* to = row(frame, 0, y);
        std::memcpy(to, from, std::size_t(luma.width));
        std::fill(to + luma.width, to + format.width, from[luma.width - 1]);
        const std::uint8_t* pair = colors.data + std::ptrdiff_t(colors.stride) * (y / 2);
        std::uint8_t *blue = row(frame, 1, y), *red = row(frame, 2, y);
        for (int x = 0; x < colors.width; ++x) {
            blue[x] = pair[2 * x];
            red[x] = pair[2 * x + 1];
        }
    }
    gst_video_frame_unmap(&frame);
    return buffer;
}

bool fromVideo(GstBuffer* buffer, const GstVideoInfo& format, Nv12Buffer& picture) {
    const platform::PixelPlane luma = picture.plane(0), colors = picture.plane(1);
    GstVideoFrame frame;
    if (GST_VIDEO_INFO_FORMAT(&format) != GST_VIDEO_FORMAT_Y42B || format.width < luma.width ||
        format.height < luma.height || !gst_video_frame_map(&frame, &format, buffer, GST_MAP_READ))
        return false;
    std::uint8_t* const pixels = picture.bytes();
    for (int y = 0; y < luma.height; ++y)
        std::memcpy(pixels + std::ptrdiff_t(luma.stride) * y, row(frame, 0, y), std::size_t(luma.width));
    for (int y = 0; y < colors.height; ++y) {
        std::uint8_t* pair = pixels + (colors.data - luma.data) + std::ptrdiff_t(colors.stride) * y;
        const std::uint8_t *blue = row(frame, 1, 2 * y), *red = row(frame, 2, 2 * y);
        for (int x = 0; x < colors.width; ++x) {
            pair[2 * x] = blue[x];
            pair[2 * x + 1] = red[x];
        }
    }
    gst_video_frame_unmap(&frame);
    return true;
}

} // namespace kestrin::session
