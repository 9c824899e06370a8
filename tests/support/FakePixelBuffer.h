#pragma once

#include "platform/Capture.h"

#include <cstdint>
#include <vector>

namespace kestrin::test {

/// A grey camera picture in memory: luma, then interleaved chroma at half size; `planes` says how many of
/// them it has.
class FakePixelBuffer : public platform::PixelBuffer {
  public:
    FakePixelBuffer(int width, int height, int planes = 2)
        : m_width(width), m_height(height), m_planes(planes),
          m_bytes(std::size_t(width) * std::size_t(height), 128) {}

    int width() const override { return m_width; }
    int height() const override { return m_height; }
    int planeCount() const override { return m_planes; }
    platform::PixelPlane plane(int index) const override {
        if (index < 0 || index >= m_planes)
            return {};
        const int part = index == 0 ? 1 : 2;
        return {m_bytes.data(), m_width / part, m_height / part, m_width};
    }

  private:
    int m_width, m_height, m_planes;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace kestrin::test
