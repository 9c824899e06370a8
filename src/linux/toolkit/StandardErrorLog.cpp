#include "linux/toolkit/StandardErrorLog.h"

#include "linux/toolkit/GRef.h"

#include <cstdio>
#include <string>

namespace kestrin::gtk {

namespace {

using Moment = GOwned<GDateTime, g_date_time_unref>;

std::string stamp() {
    const Moment now(g_date_time_new_now_local());
    const GText text(g_date_time_format(now.get(), "%H:%M:%S.%f"));
    return std::string(text.get(), 12); // milliseconds are enough
}

} // namespace

void StandardErrorLog::write(std::string_view line) {
    if (m_level == LogLevel::off)
        return;
    std::string text = stamp() + ' ';
    for (const char c : line) {
        if (c == '\n' || c == '\r')
            text += c == '\n' ? "\\n" : "\\r";
        else
            text += c;
    }
    text += '\n';
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace kestrin::gtk
