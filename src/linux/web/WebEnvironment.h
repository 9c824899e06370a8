#pragma once

#include <optional>
#include <string>

namespace kestrin::gtk {

/// Why the sandbox of the web process cannot be set up, and what to do; none when it can or is switched off.
/// WebKit itself ends the application in that case. Takes a few milliseconds.
std::optional<std::string> sandboxProblem(const std::string& sandboxProgram = "/usr/bin/bwrap");

} // namespace kestrin::gtk
