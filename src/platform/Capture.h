#pragma once

#include "platform/Dispatch.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

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

/// Takes the pictures of a capture session.
class CaptureSampleDelegate {
  public:
    virtual ~CaptureSampleDelegate() = default;
    /// `presentationTime` in seconds since some fixed moment; it goes up. Thread: the output's queue.
    virtual void captureOutput(const PixelBufferRef& buffer, double presentationTime) = 0;
};

/// How a capture session delivers its pictures, and where to.
struct CaptureOutput {
    /// A picture that comes while the delegate still has one to take is dropped; else it waits.
    bool alwaysDiscardsLateFrames = true;
    /// What is asked of the device, pixels; one that cannot gives pictures of the nearest size it has,
    int width = 640, height = 480;
    /// unless this asks for the middle of what the device gives, scaled to just that size.
    bool exactSize = false;
    std::shared_ptr<SerialQueue> queue;
    std::weak_ptr<CaptureSampleDelegate> delegate;
};

/// Pictures on their way from a camera. When the camera goes away it says so in the log once and delivers no
/// more. Its end gives the camera back. Thread: any; nothing here waits for the camera.
class CaptureSession {
  public:
    virtual ~CaptureSession() = default;
    virtual void startRunning() = 0;
    /// No delivery begins after it.
    virtual void stopRunning() = 0;
};

/// A camera that was opened; its end gives the camera back. Thread: any.
class CaptureInput {
  public:
    virtual ~CaptureInput() = default;
    /// Called once.
    virtual std::unique_ptr<CaptureSession> makeSession(CaptureOutput output) = 0;
};

struct FrameRateRange {
    double minimum = 0, maximum = 0; ///< frames a second
    bool operator==(const FrameRateRange&) const = default;
};

/// A camera. Nothing here waits for it. Thread: any, one at a time.
class CaptureDevice {
  public:
    virtual ~CaptureDevice() = default;
    virtual std::string localizedName() const = 0;
    /// Of the format in which it will give pictures; empty when that shows only later.
    virtual std::vector<FrameRateRange> frameRateRanges() const = 0;
    virtual bool supportsContinuousAutoFocus() const = 0;
    /// Lets it focus by itself, smoothly, and take up to `maximumFrameDuration` seconds for a picture and no
    /// longer, as far as it can.
    virtual void focusContinuously(double maximumFrameDuration) = 0;
    /// Opens it, or says why it cannot be opened. What shows only when its session starts is that session's
    /// failure.
    virtual std::variant<std::shared_ptr<CaptureInput>, std::string> open() = 0;
};

/// The cameras there are.
class CaptureSystem {
  public:
    virtual ~CaptureSystem() = default;
    /// Those that look at the surroundings, the preferred one last, as they are known at the moment: they are
    /// looked for in the background. Only while the first look goes on does it wait, half a second at most.
    /// Thread: any.
    virtual std::vector<std::shared_ptr<CaptureDevice>> backCameras() = 0;
};

} // namespace kestrin::platform
