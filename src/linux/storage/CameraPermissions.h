#pragma once

#include "platform/Dispatch.h"
#include "platform/Permission.h"

namespace kestrin::gtk {

/// A source without a camera needs no permission; one with a camera has it when it was granted beforehand.
class CameraPermissions final : public platform::Permissions {
  public:
    CameraPermissions(bool usesCamera, bool granted, platform::Dispatch& dispatch)
        : m_camera(!usesCamera || granted ? platform::Authorization::authorized
                                          : platform::Authorization::denied),
          m_dispatch(dispatch) {}

    platform::Authorization camera() const override { return m_camera; }
    /// Answers on main, after this call.
    void requestCamera(std::function<void(bool granted)> answer) override;

  private:
    const platform::Authorization m_camera;
    platform::Dispatch& m_dispatch;
};

} // namespace kestrin::gtk
