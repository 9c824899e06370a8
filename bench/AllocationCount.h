#pragma once

#include <cstddef>

namespace kestrin::bench {

/// How often this thread has called operator new. A program that links this replaces the operator.
std::size_t allocationCount();

} // namespace kestrin::bench
