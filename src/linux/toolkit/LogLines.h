#pragma once

#include <glib.h>

#include <string_view>

namespace kestrin::gtk {

inline constexpr const char* kLogDomain = "Kestrin";

/// Hands one line to GLib's structured logging, under the domain "Kestrin". What becomes of it is up to the
/// host's writer (`g_log_set_writer_func`); GLib's own writes to the journal when standard error is the
/// journal, with all fields, else to the terminal. Line ends inside a line are shown as `\n`, so that no page
/// can forge a line of its own. A `topic`, when there is one, goes along as the field KESTRIN_TOPIC.
/// Thread: any.
void emitLogLine(GLogLevelFlags level, std::string_view line, const char* topic = nullptr);

/// A writer for `g_log_set_writer_func`: Kestrin's lines with the local time, and nothing else, to standard
/// error. Lines of others, and all of them when standard error is the journal, it leaves to GLib's writer.
GLogWriterOutput writeLogLine(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer);

} // namespace kestrin::gtk
