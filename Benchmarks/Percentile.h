#pragma once

#include <algorithm>
#include <vector>

namespace tov::benchmarks
{

/** The sample at that fraction of the sorted samples (0.5 the median, 0.99 the 99th
    percentile), the nearest rank; 0 without samples. */
inline double percentile (std::vector<double> samples, double fraction)
{
    if (samples.empty())
        return 0.0;
    std::sort (samples.begin(), samples.end());
    return samples[std::min (samples.size() - 1, (size_t) (fraction * (double) (samples.size() - 1) + 0.5))];
}

} // namespace tov::benchmarks
