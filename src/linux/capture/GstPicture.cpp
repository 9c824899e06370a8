#include "linux/capture/GstPicture.h"

namespace kestrin::gtk {

std::shared_ptr<GstPicture> GstPicture::map(GstSample* sample) {
    GstVideoInfo info;
    GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    const std::shared_ptr<GstPicture> picture(new GstPicture);
    if (!caps || !buffer || !gst_video_info_from_caps(&info, caps) ||
        !gst_video_frame_map(&picture->m_frame, &info, buffer, GST_MAP_READ))
        return nullptr;
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
