#pragma once

#include "platform/Dispatch.h"
#include "platform/Log.h"

namespace kestrin::gtk {

/// Runs a task of a queue; an exception that leaves it is logged and ends that task only. Thread: any.
void runTask(const platform::Task& task, platform::LogSink& log);

} // namespace kestrin::gtk
