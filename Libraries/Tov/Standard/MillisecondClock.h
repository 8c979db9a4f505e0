#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** A clock in milliseconds, juce::Time::getMillisecondCounterHiRes unless replaced: the
    objects that measure durations take one, so that tests can tell the time in advance. */
using MillisecondClock = double (*)();

/** The clock that everything measures with unless told otherwise. */
inline constexpr MillisecondClock systemMillisecondClock = &juce::Time::getMillisecondCounterHiRes;

} // namespace tov
