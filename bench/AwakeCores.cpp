#include "AwakeCores.h"

#include <pthread.h>
#include <sched.h>

namespace kestrin::bench {

AwakeCores::AwakeCores() {
    for (unsigned core = 0; core < std::thread::hardware_concurrency(); ++core)
        m_threads.emplace_back([this] {
            const sched_param none{};
            if (pthread_setschedparam(pthread_self(), SCHED_IDLE, &none) != 0)
                return;
            while (!m_ends) {
            }
        });
}

AwakeCores::~AwakeCores() {
    m_ends = true;
    for (std::thread& thread : m_threads)
        thread.join();
}

} // namespace kestrin::bench
