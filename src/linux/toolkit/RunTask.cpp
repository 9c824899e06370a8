#include "linux/toolkit/RunTask.h"

#include <exception>
#include <string>

namespace kestrin::gtk {

void runTask(const platform::Task& task, platform::LogSink& log) {
    try {
        task();
    } catch (const std::exception& error) {
        log.write(std::string("Kestrin - Dispatch - A task ended with an error: ") + error.what());
    } catch (...) {
        log.write("Kestrin - Dispatch - A task ended with an unknown error.");
    }
}

} // namespace kestrin::gtk
