#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** A scope of the rendering thread as the CpuTimingsProfiler keeps it: times in milliseconds,
    and the depth of the stack when it ended (-1 while it is open). */
struct CpuTimingsRangeEvent
{
    juce::String name;
    double startTime = 0.0;
    double endTime = 0.0;
    int level = -1;
};

} // namespace tov
