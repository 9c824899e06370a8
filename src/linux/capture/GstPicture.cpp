#include "linux/capture/GstPicture.h"

#include "linux/capture/FullRange.h"

namespace kestrin::gtk {

std::shared_ptr<GstPicture> GstPicture::map(GstSample* sample) {
    GstVideoInfo info;
    GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    const std::shared_ptr<GstPicture> picture(new GstPicture);
    if (!caps || !buffer || !gst_video_info_from_caps(&info, caps))
        return nullptr;
    const auto map = [&](GstBuffer* mapped, int flags) {
        return gst_video_frame_map(&picture->m_frame, &info, mapped, GstMapFlags(flags)) != FALSE;
    };
    if (FullRange::has(info.colorimetry))
        return map(buffer, GST_MAP_READ) ? picture : nullptr;
    const GstBufferPtr copy(gst_buffer_copy_deep(buffer));
    if (!copy || !map(copy.get(), GST_MAP_READ | GST_MAP_WRITE))
        return nullptr;
    FullRange(info.colorimetry).convert(picture->m_frame);
    return picture;
}

GstPicture::~GstPicture() {
    if (m_frame.buffer)
        gst_video_frame_unmap(&m_frame);
}

platform::PixelPlane GstPicture::plane(int index) const {
    if (index < 0 || index >= planeCount())
        return {};
    const auto* data = static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&m_frame, index));
    // The first component of a plane has its number: Y, and Cb of the pairs.
    return {data, GST_VIDEO_FRAME_COMP_WIDTH(&m_frame, index), GST_VIDEO_FRAME_COMP_HEIGHT(&m_frame, index),
            GST_VIDEO_FRAME_PLANE_STRIDE(&m_frame, index)};
}

} // namespace kestrin::gtk
