#include "linux/capture/CameraTurn.h"

#include <condition_variable>
#include <mutex>

namespace kestrin::gtk {

namespace {

struct State {
    std::mutex mutex;
    std::condition_variable looked;
    int held = 0;
    bool isLooking = false;
};

/// Never destroyed: threads may still end their turn when the process does.
State& state() {
    static State& only = *new State;
    return only;
}

template <class End>
std::shared_ptr<void> untilDropped(End end) {
    return {&state(), [end](void*) {
                {
                    const std::lock_guard lock(state().mutex);
                    end(state());
                }
                state().looked.notify_all();
            }};
}

} // namespace

std::shared_ptr<void> CameraTurn::hold() {
    std::unique_lock lock(state().mutex);
    state().looked.wait(lock, [] { return !state().isLooking; });
    ++state().held;
    return untilDropped([](State& now) { --now.held; });
}

std::shared_ptr<void> CameraTurn::look() {
    std::unique_lock lock(state().mutex);
    state().looked.wait(lock, [] { return !state().isLooking; });
    if (state().held > 0)
        return nullptr;
    state().isLooking = true;
    return untilDropped([](State& now) { now.isLooking = false; });
}

} // namespace kestrin::gtk
