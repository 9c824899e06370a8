#pragma once

#include "platform/ArSession.h"

#include <optional>
#include <string_view>

namespace kestrin::session {

/// How files name why tracking is limited; "normal" when it is not.
std::string_view nameOf(platform::TrackingReason reason);
std::optional<platform::TrackingReason> reasonNamed(std::string_view name);

} // namespace kestrin::session
