#pragma once

#include "platform/Capture.h"

#include <cmath>
#include <functional>
#include <vector>

namespace kestrin::test {

struct Rgb {
    double red = 0, green = 0, blue = 0; ///< 0..255
};

/// A picture in memory as cameras give it, with rows longer than they need be.
class NvPicture final : public platform::PixelBuffer {
  public:
    /// `color` tells the colour of each chroma sample, which is two pixels wide and high.
    NvPicture(int width, int height, int padding, const std::function<Rgb(int x, int y)>& color)
        : m_width(width), m_height(height), m_stride(width + padding),
          m_luma(std::size_t(m_stride * height), 0xEE), m_chroma(std::size_t(m_stride * height / 2), 0x11) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                put(x, y, color(x / 2, y / 2));
    }

    int width() const override { return m_width; }
    int height() const override { return m_height; }
    int planeCount() const override { return 2; }
    platform::PixelPlane plane(int index) const override {
        if (index == 0)
            return {m_luma.data(), m_width, m_height, m_stride};
        if (index == 1)
            return {m_chroma.data(), m_width / 2, m_height / 2, m_stride};
        return {};
    }

  private:
    static std::uint8_t byte(double value) {
        return std::uint8_t(std::lround(std::fmin(std::fmax(value, 0), 255)));
    }

    /// The inverse of what the renderer does: full-range BT.601.
    void put(int x, int y, const Rgb& c) {
        const double luma = 0.299 * c.red + 0.587 * c.green + 0.114 * c.blue;
        m_luma[std::size_t(y * m_stride + x)] = byte(luma);
        const auto chroma = std::size_t(y / 2 * m_stride + x / 2 * 2);
        m_chroma[chroma] = byte(128 + (c.blue - luma) / 1.772);
        m_chroma[chroma + 1] = byte(128 + (c.red - luma) / 1.402);
    }

    const int m_width, m_height, m_stride;
    std::vector<std::uint8_t> m_luma, m_chroma;
};

} // namespace kestrin::test
