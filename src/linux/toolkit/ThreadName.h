#pragma once

#include <string>

namespace kestrin::gtk {

/// Names the calling thread for debuggers; the system keeps 15 characters.
void nameThread(const std::string& name);

} // namespace kestrin::gtk
