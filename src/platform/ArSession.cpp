#include "platform/ArSession.h"

namespace kestrin::platform {

Size ArReferenceImage::physicalSize() const {
    if (!image.isValid())
        return {};
    return {physicalWidth, physicalWidth * image.pixelHeight() / image.pixelWidth()};
}

} // namespace kestrin::platform
