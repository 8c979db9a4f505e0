#include "LocalMeanAndVariance.h"
#include <cmath>

namespace tov
{

void LocalMeanAndVariance::increment (double value)
{
    values.increment (value);
    makeSquaresFromValues();
}

double LocalMeanAndVariance::getVariance() const noexcept
{
    const double mean = getMean();
    return squares.getMean() - mean * mean;
}

double LocalMeanAndVariance::getStandardDeviation() const noexcept
{
    const double variance = getVariance();
    return variance > 2.220446049250313e-16 ? std::sqrt (variance) : 0.0;
}

void LocalMeanAndVariance::setValues (const std::vector<double>& newValues)
{
    values.setValues (newValues);
    makeSquaresFromValues();
}

void LocalMeanAndVariance::setHistorySize (uint64_t newHistorySize)
{
    values.setHistorySize (newHistorySize);
    squares.setHistorySize (newHistorySize);
}

void LocalMeanAndVariance::makeSquaresFromValues()
{
    std::vector<double> newSquares;
    for (double value : values.getValues())
        newSquares.push_back (value * value);
    squares.setValues (newSquares);
}

} // namespace tov
