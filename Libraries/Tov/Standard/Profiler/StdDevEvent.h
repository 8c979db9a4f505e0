#pragma once

#include "../LocalMeanAndVariance.h"
#include <juce_core/juce_core.h>

namespace tov
{

/** The statistics of one label of one thread in a StdDevProfiler: when, within its frame, the
    label happens, over its last 100 occurrences. */
class StdDevEvent
{
public:
    StdDevEvent (const juce::String& name, const juce::String& label);

    /** Counts an occurrence at now, in a frame that began at frameTime (negative before the
        first frame) and has the number frameCount. True when the statistics are to be printed:
        on frames whose number is a multiple of the period. */
    bool update (double now, double frameTime, uint64_t frameCount);
    /** threadName + " ======> " + label + " MEAN: " + mean + " +/- " + standard deviation. */
    juce::String getReportLine (const juce::String& threadName) const;

    const juce::String& getName() const noexcept                { return name; }
    const juce::String& getLabel() const noexcept               { return label; }
    uint64_t getNumSamples() const noexcept                     { return numSamples; }
    double getLastTime() const noexcept                         { return lastTime; }
    const LocalMeanAndVariance& getOffsets() const noexcept     { return offsets; }
    const LocalMeanAndVariance& getSquaredOffsets() const noexcept  { return squaredOffsets; }

    static constexpr uint64_t historySize = 100;

private:
    juce::String name;
    juce::String label;
    uint64_t period = 100;
    double lastTime = -1.0;
    LocalMeanAndVariance offsets { historySize };
    LocalMeanAndVariance squaredOffsets { historySize };
    uint64_t numSamples = 0;
};

} // namespace tov
