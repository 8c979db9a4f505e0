#include "LocalMean.h"
#include <algorithm>

namespace tov
{

void LocalMean::increment (double value) noexcept
{
    for (double& element : values)
        element += value;
    sum += value * (double) values.size();
}

void LocalMean::reset() noexcept
{
    values.clear();
    oldest = 0;
    sum = 0.0;
}

double LocalMean::getMean() const noexcept
{
    return values.empty() ? 0.0 : sum / (double) values.size();
}

std::vector<double> LocalMean::getValues() const
{
    std::vector<double> ordered (values.begin() + (long) oldest, values.end());
    ordered.insert (ordered.end(), values.begin(), values.begin() + (long) oldest);
    return ordered;
}

void LocalMean::setValues (const std::vector<double>& newValues)
{
    reset();
    for (double value : newValues)
        push (value);
}

// The ring is laid out oldest first again, so that it can grow or keep only its newest values.
void LocalMean::setHistorySize (uint64_t newHistorySize)
{
    const auto ordered = getValues();
    historySize = newHistorySize;
    const size_t numKept = (size_t) std::min<uint64_t> (ordered.size(), historySize);
    setValues ({ ordered.end() - (long) numKept, ordered.end() });
}

} // namespace tov
