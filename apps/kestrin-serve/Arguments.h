#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace kestrin::serve {

/// What the command line asks for.
struct Arguments {
    std::filesystem::path folder;
    std::string address = "127.0.0.1";
    std::uint16_t port = 8443;
    std::vector<std::string> hostNames; ///< further names for the certificate
    bool keyOnly = false;               ///< prints the key string and nothing else
    bool logs = true;
    bool asksVersion = false; ///< prints the version; the rest is not read
};

/// A command line that is not understood.
struct Misuse : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Reads and checks the command line; throws Misuse. `--help` prints and ends the process.
Arguments parseArguments(int argc, char** argv);

} // namespace kestrin::serve
