#pragma once

#include "camera/CameraFrameConsumer.h"

#include <memory>

namespace kestrin {

/// Where camera pictures come from. Thread: any.
class CameraFrameProvider {
  public:
    virtual ~CameraFrameProvider() = default;
    virtual void initialiseCamera() = 0;
    virtual void startCamera() = 0;
    virtual void stopCamera() = 0;
    /// Consumers are not kept alive; they are told in the order added.
    virtual void addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) = 0;
    /// Asked for, but the consumer stays in the list; see ListenerList.
    virtual void removeDelegate(const CameraFrameConsumer& consumer) = 0;
    virtual void removeDelegates() = 0;
    /// From normalised viewport coordinates to normalised picture coordinates (0..1, y down): what the
    /// corners of the drawn quad take as texture coordinates. Zero while there is no picture.
    virtual platform::AffineTransform getOrientationWithViewport(const platform::Size& viewport) const = 0;
};

} // namespace kestrin
