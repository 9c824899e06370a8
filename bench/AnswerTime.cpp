#include "AnswerTime.h"

#include "platform/Platform.h"

#include <chrono>
#include <memory>
#include <utility>

namespace kestrin::bench {

using Clock = std::chrono::steady_clock;

// Not in step with the frames.
constexpr std::chrono::microseconds kPeriod(3100);

AnswerTime::AnswerTime() {
    m_thread = std::thread([this] {
        while (!m_ends) {
            platform::platform().dispatch().mainAsync([samples = m_samples, posted = Clock::now()] {
                const std::chrono::duration<double, std::milli> taken = Clock::now() - posted;
                const std::lock_guard lock(samples->mutex);
                samples->milliseconds.push_back(taken.count());
            });
            std::this_thread::sleep_for(kPeriod);
        }
    });
}

AnswerTime::~AnswerTime() {
    m_ends = true;
    m_thread.join();
}

std::vector<double> AnswerTime::take() {
    const std::lock_guard lock(m_samples->mutex);
    return std::exchange(m_samples->milliseconds, {});
}

} // namespace kestrin::bench
