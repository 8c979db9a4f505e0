#include "TraceProfiler.h"

namespace tov
{

TOV_BEGIN_CLASS (TraceProfiler)
TOV_END_CLASS()

TraceEvent TraceProfiler::makeEvent (juce::StringRef name, int)
{
    TraceEvent event { name };
    juce::Logger::outputDebugString (event.name + " -> Begin");
    return event;
}

void TraceProfiler::eventFinished (TraceEvent& event)
{
    juce::Logger::outputDebugString (event.name + " -> End");
}

void TraceProfiler::markEvent (juce::StringRef name)
{
    if (isCurrentThreadRecorded())
        juce::Logger::outputDebugString (juce::String (name) + " -> Tick");
}

} // namespace tov
