#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace kestrin::test {

/// The value below which the share of the values lies; not a number when there are none.
inline double quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values.empty() ? std::numeric_limits<double>::quiet_NaN()
                          : values[std::size_t(share * double(values.size() - 1))];
}

} // namespace kestrin::test
