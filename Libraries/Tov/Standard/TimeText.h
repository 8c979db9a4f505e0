#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** The texts of wall-clock instants that log lines and log file names are made of.

    Local time, month counted from 1. The reflected Time value shows itself
    with these same texts.
*/
struct TimeText
{
    /** "2026/03/07 09:05:02"; "N/A" for a zero time. */
    static juce::String toString (juce::Time time);

    /** "09:05:02"; "N/A" for a zero time. */
    static juce::String toStringWithoutDay (juce::Time time);

    /** "07/03/2026": day, month, year. */
    static juce::String toFrenchStyleString (juce::Time time);

    /** "2026-3-7_9-5-2": no padding, and no character that a file name may not hold. */
    static juce::String toFileNameString (juce::Time time);
};

} // namespace tov
