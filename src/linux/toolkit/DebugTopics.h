#pragma once

#include "linux/toolkit/StructuredLog.h"

#include <string>
#include <string_view>

namespace kestrin::gtk {

/// What can be looked at more closely, with lines of its own.
enum class Topic : unsigned {
    web,     ///< what a page loads
    console, ///< what it writes to its console, which WebKit prints on standard error
    network, ///< the native side's requests
    camera,  ///< how a camera's pictures come to be
    rates    ///< what happens many times a second
};

/// What is wanted by the variable KESTRIN_DEBUG: topics, "all" or "help", between commas or spaces.
struct DebugWish {
    unsigned topics = 0; ///< a bit each
    bool wantsHelp = false;
    std::string unknown; ///< the last word that is none of these
};
DebugWish readDebugWish(std::string_view text);
/// The topics, a line each.
std::string debugHelp();

/// Turns topics on: those of KESTRIN_DEBUG; all of them at the level debug, or when G_MESSAGES_DEBUG lets
/// Kestrin's debug lines pass. Prints the help when it is wanted. Thread: main, before others run.
void beginDebugging(LogLevel level, platform::LogSink& log);
/// Thread: any, as for the next.
bool isDebugged(Topic topic);
/// Writes one line, at the level debug; to be asked first whether it is wanted.
void debugLine(Topic topic, std::string_view line);

} // namespace kestrin::gtk
