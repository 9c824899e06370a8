#pragma once

#include <stdexcept>

namespace kestrin::session {

/// Why a data set cannot be read: one line that names the file, and the line where there is one.
struct ImportError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace kestrin::session
