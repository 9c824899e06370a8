#pragma once

#include "platform/Dispatch.h"
#include "platform/Permission.h"

#include <utility>

namespace kestrin::gtk {

/// What was granted beforehand is allowed, the rest is not. Thread: any.
class GrantedPermissions final : public platform::Permissions {
  public:
    struct Grants {
        bool camera = false; ///< also when no real camera is used
        bool photos = false;
    };

    GrantedPermissions(const Grants& grants, platform::Dispatch& dispatch)
        : m_grants(grants), m_dispatch(dispatch) {}

    platform::Authorization camera() const override { return status(m_grants.camera); }
    platform::Authorization photos() const override { return status(m_grants.photos); }
    /// These answer on main, after the call.
    void requestCamera(Answer answer) override { give(std::move(answer), m_grants.camera); }
    void requestPhotos(Answer answer) override { give(std::move(answer), m_grants.photos); }

  private:
    static platform::Authorization status(bool granted) {
        return granted ? platform::Authorization::authorized : platform::Authorization::denied;
    }
    void give(Answer answer, bool granted) const {
        m_dispatch.mainAsync([answer = std::move(answer), granted] { answer(granted); });
    }

    const Grants m_grants;
    platform::Dispatch& m_dispatch;
};

} // namespace kestrin::gtk
