#pragma once

#include "Arguments.h"

#include "session/SourcedTracking.h"

#include <memory>

namespace kestrin::view {

/// The world tracking that the command line asks for; `session` is completed by it. Throws std::runtime_error
/// with one line when it cannot be had.
std::shared_ptr<session::SourcedTracking> makeTracking(const Arguments& arguments,
                                                       session::SessionOptions session);

} // namespace kestrin::view
