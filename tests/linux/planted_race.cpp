// A mistake made on purpose: a task of the main queue and the thread that posted it write the same number.
// The thread sanitizer must say so, or its silence about everything else means nothing.

#include "linux/toolkit/MainLoopDispatch.h"
#include "linux/toolkit/StructuredLog.h"

#include <glib.h>

#include <cstdio>
#include <thread>

int main() {
    using namespace kestrin::gtk;
    MainLoopDispatch dispatch(std::make_shared<StructuredLog>(LogLevel::info));
    int guarded = 0, shared = 0;
    bool done = false;
    std::thread poster([&] {
        guarded = 1; // before posting: seen by the task
        dispatch.mainAsync([&] {
            guarded += 1;
            shared += 1;
            done = true;
        });
        shared += 1; // after posting: races with the task
    });
    while (!done)
        g_main_context_iteration(nullptr, true);
    poster.join();
    std::printf("%d %d\n", guarded, shared);
}
