#pragma once

#include <vector>

namespace kestrin::test {

/// The web processes that this process has started and that live, in the order of their ids.
std::vector<int> webProcesses();

/// Of this process, in MB.
struct Memory {
    double resident = 0; ///< once what the allocator holds in vain was given back
    double inUse = 0;    ///< what was allocated from the heap
};
Memory memory();

/// How often a thread of this process, by its name, has gone to sleep so far; 0 when there is none.
long sleepsOf(const char* thread);

} // namespace kestrin::test
