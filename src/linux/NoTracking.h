#pragma once

#include "platform/ArSession.h"

namespace kestrin::gtk {

/// World tracking where there is none. Thread: any.
class NoTracking final : public platform::WorldTracking {
  public:
    bool isSupported() const override { return false; }
    std::shared_ptr<platform::ArSession> makeSession() override { return nullptr; }
};

} // namespace kestrin::gtk
