#pragma once

#include <concepts>
#include <limits>

namespace kestrin {

/// Cuts off the fraction; what the type cannot hold becomes its nearest value, and not-a-number becomes 0.
template <std::integral Whole>
constexpr Whole saturatingCast(double number) {
    using Limits = std::numeric_limits<Whole>;
    // The largest value of a wide type is no double; the power of two above it is.
    constexpr double kBeyond = 2.0 * double(Limits::max() / 2 + 1);
    if (number != number)
        return 0;
    if (number >= kBeyond)
        return Limits::max();
    if (number <= double(Limits::min()))
        return Limits::min();
    return Whole(number);
}

} // namespace kestrin
