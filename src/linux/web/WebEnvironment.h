#pragma once

#include <optional>
#include <string>

namespace kestrin::gtk {

/// Lets WebKit hand frames over in shared memory when there is no GPU to render on: through DMA buffers of a
/// software renderer, WebGL reaches half the frame rate. The environment's own word counts. To be called
/// before the first web process starts, and before the process has other threads.
void chooseRenderer(const std::string& devices = "/dev/dri");

/// Why the sandbox of the web process cannot be set up, and what to do; none when it can or is switched off.
/// WebKit itself ends the application in that case. Takes a few milliseconds.
std::optional<std::string> sandboxProblem(const std::string& sandboxProgram = "/usr/bin/bwrap");

} // namespace kestrin::gtk
