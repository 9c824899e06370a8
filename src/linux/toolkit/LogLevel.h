#pragma once

namespace kestrin::gtk {

enum class LogLevel {
    off,
    info, ///< the lines of `platform::LogSink`
    debug ///< and those of every topic of KESTRIN_DEBUG
};

} // namespace kestrin::gtk
