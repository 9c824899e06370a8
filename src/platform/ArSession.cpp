#include "platform/ArSession.h"

namespace kestrin::platform {

Size ArReferenceImage::physicalSize() const {
    const Size size = image.size();
    return image.isValid() ? Size{physicalWidth, physicalWidth * size.height / size.width} : Size();
}

} // namespace kestrin::platform
