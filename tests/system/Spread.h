#pragma once

#include <algorithm>
#include <limits>
#include <ostream>
#include <vector>

namespace kestrin::test {

/// Many distances in short; not numbers when there are none.
struct Spread {
    explicit Spread(std::vector<double> distances) : count(distances.size()) {
        std::ranges::sort(distances);
        if (count > 0) {
            median = distances[(count - 1) / 2];
            p95 = distances[std::size_t(0.95 * double(count - 1))];
        }
    }

    std::size_t count;
    double median = std::numeric_limits<double>::quiet_NaN(), p95 = median; ///< pixels
};

inline std::ostream& operator<<(std::ostream& stream, const Spread& spread) {
    return stream << spread.count << " discs, median " << spread.median << " px, 95 % " << spread.p95
                  << " px";
}

} // namespace kestrin::test
