#pragma once

#include <glib.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::record {

/// A command of the program: what it is called, and what runs it with the command's name as the first
/// argument.
struct Command {
    std::string_view name;
    std::string_view summary;
    void (*run)(int argc, char** argv);
};

/// The options of the commands that make something else of a recording.
struct Conversion {
    gboolean tolerant = FALSE; ///< takes what comes before the damage
    gboolean quiet = FALSE;
};

/// What a command takes.
struct Usage {
    const char* positional;           ///< the other arguments, such as "[KIND] FOLDER OUT.krs"
    const char* summary;              ///< what it does
    const char* description;          ///< more, below the options
    const GOptionEntry* entries;      ///< ends with an empty one
    Conversion* conversion = nullptr; ///< filled in, where the command takes these options too
};

/// Reads the options into the entries' variables and gives the other arguments, as many as the usage names.
/// `--help` prints and ends the process. Throws Ending.
std::vector<std::string> parse(const Usage& usage, int argc, char** argv);

/// The text of an option, if it was given; frees it.
std::optional<std::string> take(char*& text);

/// A whole number that takes up all of the text.
std::optional<std::size_t> wholeNumber(std::string_view text);
/// A finite number of at least 0. Throws Ending that names the option.
double number(std::string_view option, const std::string& text);

/// "1 frame", "2 frames".
std::string counted(std::size_t count, const std::string& thing);

} // namespace kestrin::record
