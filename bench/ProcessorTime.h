#pragma once

#include <time.h>

namespace kestrin::bench {

/// Milliseconds by a clock of the system, such as CLOCK_PROCESS_CPUTIME_ID.
inline double processorMs(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// Of the calling thread.
inline double threadMs() { return processorMs(CLOCK_THREAD_CPUTIME_ID); }

} // namespace kestrin::bench
