#pragma once

#include "content/Application.h"

namespace kestrin::content {

/// The application as its source now tells it, checked. Throws std::runtime_error, whose text names the file
/// and the field. Thread: any.
Application readApplication(const ApplicationSource& source);

} // namespace kestrin::content
