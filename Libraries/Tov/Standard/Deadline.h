#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** A moment some milliseconds from now, for waits that must end. It counts on JUCE's
    millisecond counter through its wrap every 49.7 days: what is left is a signed difference,
    never a comparison of two readings. */
class Deadline
{
public:
    /** A negative time-out counts as none: the deadline has passed at once. */
    explicit Deadline (int timeOutMilliseconds) noexcept
        : end (juce::Time::getMillisecondCounter() + (juce::uint32) juce::jmax (0, timeOutMilliseconds)) {}

    /** The milliseconds left, 0 once the deadline has passed. */
    int getRemainingMilliseconds() const noexcept
    {
        return juce::jmax (0, (int) (end - juce::Time::getMillisecondCounter()));
    }
    bool hasPassed() const noexcept                  { return getRemainingMilliseconds() == 0; }

private:
    juce::uint32 end;
};

} // namespace tov
