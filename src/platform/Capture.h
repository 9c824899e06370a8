#pragma once

#include <cstdint>
#include <memory>

namespace kestrin::platform {

/// One plane of a picture: rows of `stride` bytes, the first is the picture's top.
struct PixelPlane {
    const std::uint8_t* data = nullptr;
    int width = 0, height = 0; ///< in samples of this plane
    int stride = 0;            ///< bytes from row to row
};

/// A picture in memory. Camera pictures are bi-planar 4:2:0 YCbCr, 8 bits, full range: plane 0 is luma, plane
/// 1 interleaved Cb, Cr at half size. The pixels do not change while a reference is held, and go back to
/// their owner's pool with the last one. Thread: any.
class PixelBuffer {
  public:
    virtual ~PixelBuffer() = default;
    virtual int width() const = 0;
    virtual int height() const = 0;
    virtual int planeCount() const = 0;
    /// An index outside the count gives an empty plane.
    virtual PixelPlane plane(int index) const = 0;
};

using PixelBufferRef = std::shared_ptr<const PixelBuffer>;

} // namespace kestrin::platform
