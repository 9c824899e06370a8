#include "Arguments.h"

#include <glib.h>

#include <limits>
#include <memory>

namespace kestrin::serve {

namespace {

/// The options as GLib hands them over.
struct Raw {
    char* address = nullptr;
    char** hostNames = nullptr;
    int port = Arguments{}.port;
    gboolean key = FALSE, quiet = FALSE, version = FALSE;

    ~Raw() {
        g_free(address);
        g_strfreev(hostNames);
    }
};

Arguments checked(const Raw& raw, int argc, char** argv) {
    Arguments arguments;
    arguments.asksVersion = raw.version != FALSE;
    if (arguments.asksVersion)
        return arguments;
    if (argc < 2)
        throw Misuse("which application folder? (see --help)");
    if (argc > 2)
        throw Misuse(std::string("unexpected argument '") + argv[2] + "'");
    if (raw.port < 0 || raw.port > std::numeric_limits<std::uint16_t>::max())
        throw Misuse("--port: expected a number from 0 to 65535, not '" + std::to_string(raw.port) + "'");
    arguments.folder = argv[1];
    arguments.port = static_cast<std::uint16_t>(raw.port);
    if (raw.address)
        arguments.address = raw.address;
    for (char** name = raw.hostNames; name && *name; ++name)
        arguments.hostNames.emplace_back(*name);
    arguments.keyOnly = raw.key != FALSE;
    arguments.logs = raw.quiet == FALSE;
    return arguments;
}

} // namespace

Arguments parseArguments(int argc, char** argv) {
    Raw raw;
    const GOptionEntry entries[] = {
        {"port", 'p', 0, G_OPTION_ARG_INT, &raw.port, "Port to listen on; 0 takes a free one (default: 8443)",
         "N"},
        {"address", 'a', 0, G_OPTION_ARG_STRING, &raw.address,
         "IP address to listen on (default: 127.0.0.1, which only this machine reaches)", "ADDRESS"},
        {"host-name", 0, 0, G_OPTION_ARG_STRING_ARRAY, &raw.hostNames,
         "A further name for the certificate; may be repeated", "NAME"},
        {"key", 'k', 0, G_OPTION_ARG_NONE, &raw.key, "Print the key string alone", nullptr},
        {"quiet", 'q', 0, G_OPTION_ARG_NONE, &raw.quiet, "No log", nullptr},
        {"version", 0, 0, G_OPTION_ARG_NONE, &raw.version, "Print the version", nullptr},
        {}};
    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context(
        g_option_context_new("FOLDER - serves an application folder over HTTPS"), g_option_context_free);
    g_option_context_add_main_entries(context.get(), entries, nullptr);
    g_option_context_set_description(
        context.get(),
        "FOLDER has an application.json, which docs/application-folder.md describes.\n"
        "Prints a line of JSON once it listens: address, hostMap, template, application and key. Then logs\n"
        "requests and changes of the folder, until it is interrupted.\n"
        "Example: kestrin-serve my-application\n");
    g_autoptr(GError) error = nullptr;
    if (!g_option_context_parse(context.get(), &argc, &argv, &error))
        throw Misuse(error->message);
    return checked(raw, argc, argv);
}

} // namespace kestrin::serve
