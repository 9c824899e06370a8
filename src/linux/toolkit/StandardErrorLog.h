#pragma once

#include "platform/Log.h"

namespace kestrin::gtk {

enum class LogLevel { off, info };

/// Writes each line with the local time to standard error. Line ends inside a line are shown as `\n`, so that
/// no page can forge a line of its own. Thread: any.
class StandardErrorLog final : public platform::LogSink {
  public:
    explicit StandardErrorLog(LogLevel level) : m_level(level) {}
    void write(std::string_view line) override;

  private:
    LogLevel m_level;
};

} // namespace kestrin::gtk
