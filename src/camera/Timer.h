#pragma once

#include <string>

namespace kestrin {

/// A stopwatch for looking at where time goes, by name. Thread: any.
class Timer {
  public:
    /// Makes the process's table of start times if there is none.
    static void initInstance();
    /// Starts anew.
    static void start(const std::string& name);
    /// Milliseconds since the start, which stays; 0 for a name that was never started.
    static double stop(const std::string& name);

    Timer() = delete;
};

} // namespace kestrin
