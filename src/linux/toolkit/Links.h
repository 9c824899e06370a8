#pragma once

#include "platform/Log.h"

#include <memory>
#include <string>

namespace kestrin::gtk {

/// Whether the desktop has a default program for the address's scheme. Thread: main.
bool hasLinkHandler(const std::string& url);
/// Hands the address to that program; returns at once, a failure is logged. Thread: main.
void openLink(const std::string& url, std::shared_ptr<platform::LogSink> log);

} // namespace kestrin::gtk
