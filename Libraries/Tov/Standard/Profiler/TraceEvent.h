#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** An open scope of the TraceProfiler: its name, printed again when it ends. */
struct TraceEvent
{
    juce::String name;
};

} // namespace tov
