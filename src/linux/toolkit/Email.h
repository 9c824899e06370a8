#pragma once

#include "linux/toolkit/GRef.h"
#include "linux/toolkit/PortalRequest.h"

#include <functional>
#include <string>

namespace kestrin::gtk {

/// An e-mail for the person to complete and to send.
struct Email {
    std::string body;
    GRef<GFile> attachment; ///< a local file; empty for none
};

/// Opens it in the person's e-mail program: through the desktop's portal where one answers, else by
/// `xdg-email`. Returns at once; `failed` is told when there is no such program. Thread: main.
void composeEmail(const Email& email, const PortalLimits& limits, platform::Dispatch& dispatch,
                  std::function<void(const std::string& reason)> failed);

} // namespace kestrin::gtk
