#pragma once

#include "platform/Platform.h"

#include <utility>

namespace kestrin {

/// Off the main thread: posts `again`, which repeats the call there, and is true. Thread: any.
template <class Again>
bool divertToMain(Again&& again) {
    platform::Dispatch& dispatch = platform::platform().dispatch();
    if (dispatch.isMain())
        return false;
    dispatch.mainAsync(std::forward<Again>(again));
    return true;
}

/// Runs `task` at once on main, else posts it there. Thread: any.
void onMain(platform::Task task);

/// Stops a debug build that calls a main-thread operation from elsewhere.
void assertMain();

} // namespace kestrin
