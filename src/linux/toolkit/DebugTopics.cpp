#include "linux/toolkit/DebugTopics.h"

#include <array>
#include <atomic>
#include <cstdio>

namespace kestrin::gtk {

namespace {

constexpr unsigned kAll = ~0U;

struct Described {
    const char *name, *meaning;
};

/// In the order of Topic.
constexpr std::array<Described, 5> kTopics{{
    {"web", "what a page loads, with status and milliseconds"},
    {"console", "what a page writes to its console; WebKit prints it itself"},
    {"network", "the native side's requests, with status, size and milliseconds"},
    {"camera", "how a camera's pictures come to be: pipeline, format, states"},
    {"rates", "once a second: pictures of the camera and drawn, scripts to the page, its messages"},
}};

std::atomic<unsigned> debugged = 0;

unsigned bitOf(Topic topic) { return 1U << unsigned(topic); }

void take(std::string_view word, DebugWish& wish) {
    if (word.empty())
        return;
    if (word == "help") {
        wish.wantsHelp = true;
        return;
    }
    unsigned found = word == "all" ? kAll : 0;
    for (unsigned i = 0; i < kTopics.size(); ++i)
        if (word == kTopics[i].name)
            found = bitOf(Topic(i));
    wish.topics |= found;
    if (found == 0)
        wish.unknown = word;
}

} // namespace

DebugWish readDebugWish(std::string_view text) {
    DebugWish wish;
    while (!text.empty()) {
        const auto end = text.find_first_of(", :;");
        take(text.substr(0, end), wish);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return wish;
}

std::string debugHelp() {
    std::string text = "KESTRIN_DEBUG takes topics, with commas between them, or all:";
    for (const auto& [name, meaning] : kTopics)
        text += "\n  " + std::string(name) + std::string(9 - std::string_view(name).size(), ' ') + meaning;
    return text;
}

void beginDebugging(LogLevel level, platform::LogSink& log) {
    const char* const text = g_getenv("KESTRIN_DEBUG");
    const DebugWish wish = readDebugWish(text ? text : "");
    const bool wantsAll =
        level == LogLevel::debug || !g_log_writer_default_would_drop(G_LOG_LEVEL_DEBUG, kLogDomain);
    debugged = wantsAll ? kAll : wish.topics;
    if (wish.wantsHelp)
        std::fprintf(stderr, "%s\n", debugHelp().c_str());
    if (!wish.unknown.empty())
        log.write("Kestrin - KESTRIN_DEBUG - There is no topic " + wish.unknown +
                  "; KESTRIN_DEBUG=help lists them.");
}

bool isDebugged(Topic topic) { return (debugged & bitOf(topic)) != 0; }

void debugLine(Topic topic, std::string_view line) {
    const char* const name = kTopics.at(unsigned(topic)).name;
    emitLogLine(G_LOG_LEVEL_DEBUG, std::string(name).append(" - ").append(line), name);
}

} // namespace kestrin::gtk
