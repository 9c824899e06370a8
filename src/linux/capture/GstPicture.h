#pragma once

#include "linux/capture/GstParts.h"
#include "platform/Capture.h"

#include <gst/video/video.h>

namespace kestrin::gtk {

/// A picture where GStreamer put it. Thread: any.
class GstPicture final : public platform::PixelBuffer {
  public:
    /// Null when the sample holds no picture that can be read. One of another range or matrix is converted,
    /// in a copy: its decoder may go on to read it.
    static std::shared_ptr<GstPicture> map(GstSample* sample);
    ~GstPicture() override;
    GstPicture(const GstPicture&) = delete;
    GstPicture& operator=(const GstPicture&) = delete;

    int width() const override { return GST_VIDEO_FRAME_WIDTH(&m_frame); }
    int height() const override { return GST_VIDEO_FRAME_HEIGHT(&m_frame); }
    int planeCount() const override { return int(GST_VIDEO_FRAME_N_PLANES(&m_frame)); }
    platform::PixelPlane plane(int index) const override;

  private:
    GstPicture() = default;

    GstVideoFrame m_frame{};
};

} // namespace kestrin::gtk
