#include "CpuTimingsProfiler.h"

namespace tov
{

TOV_BEGIN_CLASS (CpuTimingsProfiler)
TOV_END_CLASS()

void CpuTimingsProfiler::beginFrame()
{
    StackEventProfiler::beginFrame();
    finishedEvents.clear();
    markers.clear();
}

// The list is in the order the scopes ended, children before their parents: read backwards,
// it shows each parent above its children.
void CpuTimingsProfiler::endFrame()
{
    juce::Logger::outputDebugString ("Kelvo frame report");
    for (auto event = finishedEvents.rbegin(); event != finishedEvents.rend(); ++event)
        juce::Logger::outputDebugString (juce::String::repeatedString (" ", event->level) + event->name
                                         + ";" + juce::String (event->endTime - event->startTime));
}

// Markers come from the rendering thread alone, as the scopes do: the lists have no lock.
void CpuTimingsProfiler::markEvent (juce::StringRef name)
{
    if (isCurrentThreadRecorded())
        markers.push_back ({ names.get (name), clock() });
}

CpuTimingsRangeEvent CpuTimingsProfiler::makeEvent (juce::StringRef name, int)
{
    return { names.get (name), clock(), 0.0, -1 };
}

void CpuTimingsProfiler::eventFinished (CpuTimingsRangeEvent& event)
{
    event.level = (int) getCurrentThreadStackDepth();
    event.endTime = clock();
    finishedEvents.push_back (std::move (event));
}

} // namespace tov
