#pragma once

#include "linux/toolkit/LogLines.h"
#include "platform/Log.h"

namespace kestrin::gtk {

enum class LogLevel {
    off,
    info, ///< the lines of `platform::LogSink`
    debug ///< and those of every topic of KESTRIN_DEBUG
};

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
