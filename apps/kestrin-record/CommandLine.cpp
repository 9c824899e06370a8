#include "CommandLine.h"

#include "Ending.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <utility>

namespace kestrin::record {

std::vector<std::string> parse(const Usage& usage, int argc, char** argv) {
    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context(
        g_option_context_new(usage.positional), g_option_context_free);
    g_set_prgname((std::string("kestrin-record ") + argv[0]).c_str());
    g_option_context_add_main_entries(context.get(), usage.entries, nullptr);
    if (usage.conversion) {
        const GOptionEntry entries[] = {
            {"tolerant", 0, 0, G_OPTION_ARG_NONE, &usage.conversion->tolerant,
             "Take what comes before the damage", nullptr},
            {"quiet", 'q', 0, G_OPTION_ARG_NONE, &usage.conversion->quiet, "Show no progress", nullptr},
            {}};
        g_option_context_add_main_entries(context.get(), entries, nullptr);
    }
    g_option_context_set_summary(context.get(), usage.summary);
    g_option_context_set_description(context.get(), usage.description);
    g_autoptr(GError) error = nullptr;
    if (!g_option_context_parse(context.get(), &argc, &argv, &error))
        throw Ending(kMisused, error->message);
    std::vector<std::string> rest(argv + 1, argv + argc);
    std::erase(rest, "--");
    const std::string_view expected(usage.positional);
    const auto most = 1 + std::size_t(std::ranges::count(expected, ' '));
    if (rest.size() > most || rest.size() + std::size_t(std::ranges::count(expected, '[')) < most)
        throw Ending(kMisused,
                     argv[0] + std::string(" what? Expected ") + usage.positional + " (see --help)");
    return rest;
}

std::optional<std::string> take(char*& text) {
    const std::unique_ptr<char, decltype(&g_free)> owned(std::exchange(text, nullptr), g_free);
    return owned ? std::optional<std::string>(owned.get()) : std::nullopt;
}

std::optional<std::size_t> wholeNumber(std::string_view text) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

double number(std::string_view option, const std::string& text) {
    double value = NAN;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= 0) || std::isinf(value))
        throw Ending(kMisused, std::string(option) + ": expected a number from 0, not '" + text + "'");
    return value;
}

std::string counted(std::size_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

} // namespace kestrin::record
