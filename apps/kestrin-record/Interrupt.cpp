#include "Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace kestrin::record {

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

void noteInterrupts() {
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

bool isInterrupted() { return interrupted != 0; }

} // namespace kestrin::record
