#pragma once

#include "platform/Capture.h"

#include <cstddef>
#include <vector>

namespace kestrin::session {

/// A picture in memory: luma, then interleaved Cb, Cr at half size (rounded up), rows `stride` bytes apart.
/// Full range BT.601; with samples in [0, 1] and c = 128 / 255:
///   Y = 0.299 R + 0.587 G + 0.114 B     Cb = (B - Y) / 1.772 + c     Cr = (R - Y) / 1.402 + c
///   R = Y + 1.402 (Cr - c)     G = Y - 0.344136 (Cb - c) - 0.714136 (Cr - c)     B = Y + 1.772 (Cb - c)
/// The owner writes the pixels before anyone else holds the picture.
class Nv12Buffer final : public platform::PixelBuffer {
  public:
    Nv12Buffer(int width, int height)
        : m_width(width), m_height(height), m_bytes(std::size_t(stride()) * std::size_t(rows())) {}

    int width() const override { return m_width; }
    int height() const override { return m_height; }
    int planeCount() const override { return 2; }
    platform::PixelPlane plane(int index) const override;

    /// A multiple of four, so that a row is whole RGBA pixels.
    int stride() const { return (m_width + 3) / 4 * 4; }
    /// Of both planes together, which lie one behind the other.
    int rows() const { return m_height + (m_height + 1) / 2; }
    std::uint8_t* bytes() { return m_bytes.data(); }

  private:
    int m_width, m_height;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace kestrin::session
