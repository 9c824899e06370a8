#pragma once

#include <glib.h>

#include <chrono>
#include <functional>

namespace kestrin::test {

/// Turns the main loop until `done`; false when that took longer than `seconds`.
inline bool runUntil(const std::function<bool()>& done, double seconds = 10) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    // Wakes the loop regularly, as what `done` looks at may change on another thread.
    const guint tick = g_timeout_add(
        5, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!done() && std::chrono::steady_clock::now() < end)
        g_main_context_iteration(nullptr, true);
    g_source_remove(tick);
    return done();
}

/// Turns the main loop for a while.
inline void runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

} // namespace kestrin::test
