#pragma once

#include <string_view>

namespace kestrin::platform {

/// Where log lines go. Thread: any.
class LogSink {
  public:
    virtual ~LogSink() = default;
    /// One line of free text, without its line end.
    virtual void write(std::string_view line) = 0;
};

} // namespace kestrin::platform
