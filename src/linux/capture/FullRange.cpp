#include "linux/capture/FullRange.h"

#include <algorithm>
#include <cmath>

namespace kestrin::gtk {

namespace {

constexpr int kBits = 16;
constexpr double kOne = 1 << kBits;
constexpr std::int32_t kHalf = 1 << (kBits - 1); // so that cutting off rounds
constexpr double kRed = 0.299, kBlue = 0.114;    // of BT.601

struct Colour {
    double y = 0, cb = 0, cr = 0; ///< 0 to 1, and -0.5 to 0.5
};

/// The same colour in BT.601, when `red` and `blue` are the other matrix's.
Colour toBt601(const Colour& from, double red, double blue) {
    const double r = from.y + 2 * (1 - red) * from.cr, b = from.y + 2 * (1 - blue) * from.cb;
    const double g = (from.y - red * r - blue * b) / (1 - red - blue);
    const double y = kRed * r + (1 - kRed - kBlue) * g + kBlue * b;
    return {y, (b - y) / (2 * (1 - kBlue)), (r - y) / (2 * (1 - kRed))};
}

std::int32_t fixed(double value) { return std::int32_t(std::lround(value * 255 * kOne)); }

std::uint8_t sample(std::int32_t sum) { return std::uint8_t(std::clamp(sum >> kBits, 0, 255)); }

} // namespace

bool FullRange::has(const GstVideoColorimetry& colorimetry) {
    return colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255 &&
           colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_BT601;
}

FullRange::FullRange(const GstVideoColorimetry& from) {
    double red = kRed, blue = kBlue;
    gst_video_color_matrix_get_Kr_Kb(from.matrix, &red, &blue);
    const bool isFull = from.range == GST_VIDEO_COLOR_RANGE_0_255;
    const double black = isFull ? 0 : 16, lumaSteps = isFull ? 255 : 219, chromaSteps = isFull ? 255 : 224;
    const Colour cb = toBt601({0, 1, 0}, red, blue), cr = toBt601({0, 0, 1}, red, blue);
    for (int i = 0; i < 256; ++i) {
        const std::size_t at = std::size_t(i);
        const double chroma = (i - 128) / chromaSteps;
        m_luma[at] = fixed((i - black) / lumaSteps) + kHalf;
        m_yOfCb[at] = fixed(chroma * cb.y);
        m_yOfCr[at] = fixed(chroma * cr.y);
        m_cbOfCb[at] = fixed(chroma * cb.cb) + (128 << kBits) + kHalf;
        m_cbOfCr[at] = fixed(chroma * cr.cb);
        m_crOfCb[at] = fixed(chroma * cb.cr);
        m_crOfCr[at] = fixed(chroma * cr.cr) + (128 << kBits) + kHalf;
    }
}

void FullRange::convert(GstVideoFrame& frame) const {
    const int width = GST_VIDEO_FRAME_WIDTH(&frame), height = GST_VIDEO_FRAME_HEIGHT(&frame);
    const auto row = [&](int plane, int y) {
        return static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
               std::ptrdiff_t(GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane)) * y;
    };
    for (int y = 0; y < height; y += 2) {
        std::uint8_t* pair = row(1, y / 2);
        std::uint8_t *upper = row(0, y), *lower = row(0, std::min(y + 1, height - 1));
        for (int x = 0; x < width; x += 2, pair += 2) {
            const std::uint8_t cb = pair[0], cr = pair[1];
            const std::int32_t shift = m_yOfCb[cb] + m_yOfCr[cr];
            for (int i = x; i < std::min(x + 2, width); ++i) {
                const std::uint8_t below = lower[i]; // the last of an odd number of rows is both
                upper[i] = sample(m_luma[upper[i]] + shift);
                lower[i] = sample(m_luma[below] + shift);
            }
            pair[0] = sample(m_cbOfCb[cb] + m_cbOfCr[cr]);
            pair[1] = sample(m_crOfCb[cb] + m_crOfCr[cr]);
        }
    }
}

} // namespace kestrin::gtk
