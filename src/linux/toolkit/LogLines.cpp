#include "linux/toolkit/LogLines.h"

#include "linux/toolkit/GRef.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace kestrin::gtk {

namespace {

using Moment = GOwned<GDateTime, g_date_time_unref>;

/// As in syslog: 7 is debug, 5 is notice.
const char* priorityOf(GLogLevelFlags level) { return level == G_LOG_LEVEL_DEBUG ? "7" : "5"; }

std::string inOneLine(std::string_view line) {
    std::string text;
    text.reserve(line.size());
    for (const char c : line) {
        if (c == '\n' || c == '\r')
            text += c == '\n' ? "\\n" : "\\r";
        else
            text += c;
    }
    return text;
}

std::string stamp() {
    const Moment now(g_date_time_new_now_local());
    const GText text(g_date_time_format(now.get(), "%H:%M:%S.%f"));
    return std::string(text.get(), 12); // milliseconds are enough
}

std::string_view fieldIn(const GLogField* fields, gsize count, const char* key) {
    for (const GLogField* field = fields; field != fields + count; ++field)
        if (std::strcmp(field->key, key) == 0) {
            const auto* text = static_cast<const char*>(field->value);
            return field->length < 0 ? std::string_view(text) : std::string_view(text, gsize(field->length));
        }
    return {};
}

} // namespace

void emitLogLine(GLogLevelFlags level, std::string_view line, const char* topic) {
    const std::string text = inOneLine(line);
    std::vector<GLogField> fields{{"MESSAGE", text.data(), gssize(text.size())},
                                  {"PRIORITY", priorityOf(level), -1},
                                  {"GLIB_DOMAIN", kLogDomain, -1}};
    if (topic)
        fields.push_back({"KESTRIN_TOPIC", topic, -1});
    // GLib's writer drops debug lines unless G_MESSAGES_DEBUG names their domain; these were asked for in
    // another way.
    const bool wouldDrop =
        level == G_LOG_LEVEL_DEBUG && g_log_writer_default_would_drop(G_LOG_LEVEL_DEBUG, kLogDomain);
    g_log_structured_array(wouldDrop ? G_LOG_LEVEL_MESSAGE : level, fields.data(), fields.size());
}

GLogWriterOutput writeLogLine(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer) {
    const bool isOwn = fieldIn(fields, count, "GLIB_DOMAIN") == kLogDomain;
    if (!isOwn || g_log_writer_is_journald(fileno(stderr)))
        return g_log_writer_default(level, fields, count, nullptr);
    const std::string text = stamp().append(" ").append(fieldIn(fields, count, "MESSAGE")).append("\n");
    std::fwrite(text.data(), 1, text.size(), stderr);
    return G_LOG_WRITER_HANDLED;
}

} // namespace kestrin::gtk
