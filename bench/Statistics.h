#pragma once

#include <vector>

namespace kestrin::bench {

/// The value below which `part` of the samples lie, 0..1; 0 without samples.
double percentile(std::vector<double> samples, double part);

inline double median(std::vector<double> samples) { return percentile(std::move(samples), 0.5); }

} // namespace kestrin::bench
