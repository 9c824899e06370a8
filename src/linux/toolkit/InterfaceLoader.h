#pragma once

#include "platform/Log.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// Builds the interface resource `name`. A missing or broken one gives an empty interface and a line in the
/// log. Thread: main.
platform::Interface loadInterface(const std::string& name, platform::LogSink& log);

} // namespace kestrin::gtk
