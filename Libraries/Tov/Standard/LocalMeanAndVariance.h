#pragma once

#include "LocalMean.h"

namespace tov
{

/** The mean and the variance of the last values pushed: a LocalMean of the values and one of
    their squares, over the same window. */
class LocalMeanAndVariance
{
public:
    explicit LocalMeanAndVariance (uint64_t historySize = 0) noexcept : values (historySize), squares (historySize) {}

    void push (double value)                             { values.push (value); squares.push (value * value); }
    /** Adds the value to every value of the window; the squares are made anew from them. */
    void increment (double value);
    void reset() noexcept                                { values.reset(); squares.reset(); }

    double getMean() const noexcept                      { return values.getMean(); }
    /** The mean of the squares minus the square of the mean. */
    double getVariance() const noexcept;
    /** 0 while the variance is within rounding of 0 (at most 2.220446049250313e-16). */
    double getStandardDeviation() const noexcept;
    double getSumOfValues() const noexcept               { return values.getSumOfValues(); }
    size_t getNumValues() const noexcept                 { return values.getNumValues(); }
    std::vector<double> getValues() const                { return values.getValues(); }
    void setValues (const std::vector<double>& newValues);

    uint64_t getHistorySize() const noexcept             { return values.getHistorySize(); }
    void setHistorySize (uint64_t newHistorySize);
    bool isHistoryFull() const noexcept                  { return values.isHistoryFull(); }

private:
    LocalMean values;
    LocalMean squares;

    void makeSquaresFromValues();
};

} // namespace tov
