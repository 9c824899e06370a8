#include "Statistics.h"

#include <algorithm>
#include <cstddef>

namespace kestrin::bench {

double percentile(std::vector<double> samples, double part) {
    if (samples.empty())
        return 0;
    const auto index = std::ptrdiff_t(part * double(samples.size() - 1) + 0.5);
    std::nth_element(samples.begin(), samples.begin() + index, samples.end());
    return samples[std::size_t(index)];
}

} // namespace kestrin::bench
