#include "linux/storage/CameraPermissions.h"

#include <utility>

namespace kestrin::gtk {

void CameraPermissions::requestCamera(std::function<void(bool granted)> answer) {
    const bool granted = m_camera == platform::Authorization::authorized;
    m_dispatch.mainAsync([answer = std::move(answer), granted] { answer(granted); });
}

} // namespace kestrin::gtk
