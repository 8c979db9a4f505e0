#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov
{

/** The mean of the last values pushed: a sliding window of at most historySize doubles.

    The sum is kept as values come and go, never recomputed, so that a push costs the same
    whatever the window's size. A window of size 0 holds nothing.

    The window is a ring: it grows to the history size, then each push overwrites the oldest
    value, so that a full window allocates nothing and moves nothing.
*/
class LocalMean
{
public:
    explicit LocalMean (uint64_t historySize = 0) noexcept : historySize (historySize) {}

    /** Appends the value, dropping the oldest one when the window is full. */
    void push (double value)
    {
        if (values.size() < historySize)
            values.push_back (value);
        else if (historySize != 0)
            replaceOldest (value);
        else
            return;
        sum += value;
    }
    /** Adds the value to every value of the window. */
    void increment (double value) noexcept;
    void reset() noexcept;

    /** 0 for an empty window. */
    double getMean() const noexcept;
    double getSumOfValues() const noexcept               { return sum; }
    size_t getNumValues() const noexcept                 { return values.size(); }
    /** Oldest first. */
    std::vector<double> getValues() const;
    /** The window becomes these values, oldest first; beyond the history size only the newest stay. */
    void setValues (const std::vector<double>& newValues);

    uint64_t getHistorySize() const noexcept             { return historySize; }
    /** A smaller size drops the oldest values. */
    void setHistorySize (uint64_t newHistorySize);
    bool isHistoryFull() const noexcept                  { return values.size() >= historySize; }

private:
    std::vector<double> values;
    /** Where the oldest value is once the window is full; 0 before. */
    size_t oldest = 0;
    uint64_t historySize = 0;
    double sum = 0.0;

    void replaceOldest (double value) noexcept
    {
        sum -= values[oldest];
        values[oldest] = value;
        oldest = oldest + 1 == values.size() ? 0 : oldest + 1;
    }
};

} // namespace tov
