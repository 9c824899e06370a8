#pragma once

#include "Arguments.h"

namespace kestrin::view {

/// Shows the page in a window over the session's picture until the window is closed or the frames are over.
Ending run(const Arguments& arguments);
/// The person will be asked again for what an earlier run was allowed or refused.
Ending forgetPermissions();

} // namespace kestrin::view
