#pragma once

#include "platform/Log.h"

#include <memory>
#include <string>

namespace kestrin::gtk {

/// Tries whether the sandbox of the web process can be set up, and logs why not and what to do: WebKit itself
/// then ends the application with a word that helps nobody. Does not wait for the outcome. Thread: main.
void checkSandbox(std::shared_ptr<platform::LogSink> log, const std::string& program = "/usr/bin/bwrap");

} // namespace kestrin::gtk
