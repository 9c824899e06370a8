#pragma once

#include "platform/Platform.h"

namespace kestrin {

/// Whether the system offers what came with that level, such as 11.3. Thread: any.
inline bool systemIsAtLeast(double level) { return platform::platform().featureLevel() >= level; }

} // namespace kestrin
