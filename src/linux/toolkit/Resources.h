#pragma once

#include <optional>
#include <string>

namespace kestrin::gtk {

/// The framework's own resources, which are part of the library: "interfaces/NAME.ui", "shaders/NAME.TYPE".
/// Thread: any.
std::optional<std::string> resourceText(const std::string& name);
/// Where GTK finds such a resource.
std::string resourcePath(const std::string& name);

} // namespace kestrin::gtk
