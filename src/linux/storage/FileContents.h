#pragma once

#include <gio/gio.h>

#include <optional>
#include <string>

namespace kestrin::gtk {

/// All bytes of a file; none when it cannot be read. Thread: any.
std::optional<std::string> contentsOf(GFile* file);

} // namespace kestrin::gtk
