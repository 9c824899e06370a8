#pragma once

#include <gst/video/video.h>

#include <array>
#include <cstdint>

namespace kestrin::gtk {

/// From a YCbCr of whatever range and matrix to the full range of BT.601, rounded once: GStreamer's own
/// converters change nothing but the name when the matrix is the same, and on the way through RGB white does
/// not stay white. Thread: any.
class FullRange {
  public:
    /// Whether pictures of this colorimetry are of that kind already.
    static bool has(const GstVideoColorimetry& colorimetry);
    explicit FullRange(const GstVideoColorimetry& from);

    /// In place, NV12.
    void convert(GstVideoFrame& frame) const;

  private:
    /// What one chroma sample gives to another component, by its value; fixed point.
    using Share = std::array<std::int32_t, 256>;

    std::array<std::int32_t, 256> m_luma; ///< by value; fixed point
    Share m_yOfCb, m_yOfCr, m_cbOfCb, m_cbOfCr, m_crOfCb, m_crOfCr;
};

} // namespace kestrin::gtk
