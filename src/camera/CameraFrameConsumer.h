#pragma once

#include "platform/Capture.h"
#include "platform/Matrix.h"

namespace kestrin {

/// Takes camera pictures.
class CameraFrameConsumer {
  public:
    virtual ~CameraFrameConsumer() = default;
    /// `timeStamp` in seconds. Who needs the picture later keeps the reference. Returns the size at which the
    /// picture is shown, points. Thread: session or camera, one call at a time.
    virtual platform::Size cameraFrameReceivedWithBuffer(const platform::PixelBufferRef& buffer,
                                                         double timeStamp, int bufferWidth,
                                                         int bufferHeight) = 0;
};

} // namespace kestrin
