#include "LocalMean.h"

namespace tov
{

void LocalMean::push (double value)
{
    if (historySize == 0)
    {
        reset();
        return;
    }
    while (values.size() >= historySize)
        dropOldest();
    values.push_back (value);
    sum += value;
}

void LocalMean::increment (double value) noexcept
{
    for (double& element : values)
        element += value;
    sum += value * (double) values.size();
}

void LocalMean::reset() noexcept
{
    values.clear();
    sum = 0.0;
}

double LocalMean::getMean() const noexcept
{
    return values.empty() ? 0.0 : sum / (double) values.size();
}

void LocalMean::setValues (const std::vector<double>& newValues)
{
    reset();
    for (double value : newValues)
        push (value);
}

void LocalMean::setHistorySize (uint64_t newHistorySize)
{
    historySize = newHistorySize;
    if (historySize == 0)
        reset();
    while (values.size() > historySize)
        dropOldest();
}

void LocalMean::dropOldest() noexcept
{
    sum -= values.front();
    values.pop_front();
}

} // namespace tov
