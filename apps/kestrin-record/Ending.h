#pragma once

#include <stdexcept>

namespace kestrin::record {

/// The program's exit statuses.
enum Status { kDone = 0, kFailed = 1, kMisused = 2, kInterrupted = 130 };

/// Ends the program: one line for people, and the status.
struct Ending : std::runtime_error {
    Ending(Status code, const std::string& text) : std::runtime_error(text), status(code) {}
    const Status status;
};

} // namespace kestrin::record
