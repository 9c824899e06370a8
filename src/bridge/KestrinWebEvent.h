#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>

namespace kestrin {

/// The events that a page can post; an event's number is its place in the table. Thread: any.
class KestrinWebEvent {
  public:
    static constexpr std::ptrdiff_t kNotFound = std::numeric_limits<std::ptrdiff_t>::max();

    static std::ptrdiff_t getEventCount();
    /// Names are compared exactly; kNotFound for one that is absent or not in the table.
    static std::ptrdiff_t stringToEvent(std::optional<std::string_view> name);
    /// Throws std::out_of_range for a number outside the table.
    static std::string_view eventToString(std::ptrdiff_t event);

    KestrinWebEvent() = delete;
};

} // namespace kestrin
