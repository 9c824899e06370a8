#pragma once

#include "linux/toolkit/LogLevel.h"
#include "linux/toolkit/LogLines.h"
#include "platform/Log.h"

namespace kestrin::gtk {

/// Sends each line, as a message, to GLib's structured logging. Thread: any.
class StructuredLog final : public platform::LogSink {
  public:
    explicit StructuredLog(LogLevel level) : m_level(level) {}
    void write(std::string_view line) override {
        if (m_level != LogLevel::off)
            emitLogLine(G_LOG_LEVEL_MESSAGE, line);
    }

  private:
    const LogLevel m_level;
};

} // namespace kestrin::gtk
