#pragma once

#include "platform/Dispatch.h"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <utility>

namespace kestrin::gtk {

/// What `ask` answers on the queue, waited for at most that long; its later answer is dropped. Thread: any
/// but the queue's.
template <class Answer>
std::optional<Answer> within(double seconds, platform::SerialQueue& queue, std::function<Answer()> ask) {
    const auto promise = std::make_shared<std::promise<Answer>>();
    auto answer = promise->get_future();
    queue.async([promise, ask = std::move(ask)] { promise->set_value(ask()); });
    if (answer.wait_for(std::chrono::duration<double>(seconds)) != std::future_status::ready)
        return std::nullopt;
    return answer.get();
}

} // namespace kestrin::gtk
