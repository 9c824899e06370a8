#pragma once

#include "platform/Matrix.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace kestrin::platform {

/// An immutable picture: RGBA, 8 bits a channel, not premultiplied, rows without padding, top row first.
/// Copies share the pixels. Thread: any.
class Image {
  public:
    /// An absent picture: isValid() is false, all sizes are 0.
    Image() = default;
    /// `pixels` holds width * height * 4 bytes, else the image is absent. `scale` is pixels a point.
    Image(int pixelWidth, int pixelHeight, std::vector<std::uint8_t> pixels, double scale = 1);
    /// The same, of any size in points.
    Image(int pixelWidth, int pixelHeight, std::vector<std::uint8_t> pixels, const Size& size);

    bool isValid() const { return m_pixels != nullptr; }
    int pixelWidth() const { return m_width; }
    int pixelHeight() const { return m_height; }
    /// In points.
    Size size() const { return m_size; }
    std::span<const std::uint8_t> pixels() const;
    /// The part of the rectangle (pixels, from the top-left corner) that lies within the picture, at scale 1;
    /// absent when nothing does.
    Image cropped(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) const;
    /// The picture with at most that many pixels, one at least, or as near to it as its shorter side allows:
    /// fields of whole pixels averaged. Itself when it has no more. Its size in points stays.
    Image shrunk(std::int64_t mostPixels) const;

  private:
    std::shared_ptr<const std::vector<std::uint8_t>> m_pixels;
    int m_width = 0, m_height = 0;
    Size m_size;
};

/// A picture stretched over a rectangle.
struct ImageLayer {
    Image image;
    Rect rect;                                               ///< points; y down
    AffineTransform transform = AffineTransform::identity(); ///< of the rectangle, into the canvas
};

/// Reads and writes picture files in memory, and draws pictures. Thread: any.
class ImageCodec {
  public:
    virtual ~ImageCodec() = default;
    /// Of any picture that is read or drawn.
    static constexpr std::int64_t kMostPixels = 64'000'000;

    /// PNG, JPEG and what else the system reads, a point a pixel; bytes that are no picture, or one of more
    /// than `kMostPixels`, give an absent image. A picture of more than `mostPixels`, one at least, comes
    /// shrunk to no more, which takes less time and memory, and keeps its size in points.
    virtual Image decode(std::span<const std::uint8_t> bytes,
                         std::int64_t mostPixels = kMostPixels) const = 0;
    /// `quality` in [0, 1], kept within it; at 1 the colours are as fine as the brightness. An absent image,
    /// or one that JPEG has no room for, gives no bytes. Transparency is dropped.
    virtual std::vector<std::uint8_t> encodeJpeg(const Image& image, double quality) const = 0;
    /// Layers drawn one over the other, smoothly, on a canvas of `size` points with `scale` pixels a point:
    /// a black one if `opaque`, else a transparent one. The pixels are rounded to whole numbers; none, more
    /// than 64 million, or a side of more than 32767 give an absent image. Absent layers draw nothing.
    virtual Image compose(const Size& size, bool opaque, double scale,
                          std::span<const ImageLayer> layers) const = 0;
};

} // namespace kestrin::platform
