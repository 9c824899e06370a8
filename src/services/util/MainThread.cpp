#include "services/util/MainThread.h"

#include <cassert>
#include <utility>

namespace kestrin {

void onMain(platform::Task task) {
    platform::Dispatch& dispatch = platform::platform().dispatch();
    if (dispatch.isMain())
        task();
    else
        dispatch.mainAsync(std::move(task));
}

#ifdef KESTRIN_DEBUG_CHECKS
void assertMain() { assert(platform::platform().dispatch().isMain() && "call this on the main thread"); }
#else
void assertMain() {}
#endif

} // namespace kestrin
