#include "StdDevProfiler.h"

namespace tov
{

TOV_BEGIN_CLASS (StdDevProfiler)
TOV_END_CLASS()

void StdDevProfiler::beginFrame()
{
    StackEventProfiler::beginFrame();
    frameTime = clock();
    ++frameCount;
}

void StdDevProfiler::markEvent (juce::StringRef name)
{
    if (isCurrentThreadRecorded())
        record (name, LabelKind::mark);
}

StdDevEvent* StdDevProfiler::makeEvent (juce::StringRef name, int)
{
    return record (name, LabelKind::begin);
}

void StdDevProfiler::eventFinished (StdDevEvent*& event)
{
    record (event->getName(), LabelKind::end);
}

juce::String StdDevProfiler::makeLabel (juce::StringRef name, LabelKind kind)
{
    switch (kind)
    {
        case LabelKind::begin:  return juce::String (name) + " (Begin)";
        case LabelKind::end:    return juce::String (name) + " (End)";
        case LabelKind::mark:   break;
    }
    return name;
}

// Entries of the map never move: the stacks hold pointers to them for as long as the profiler lives.
StdDevEvent* StdDevProfiler::record (juce::StringRef name, LabelKind kind)
{
    const double now = clock();
    const LookUpKey key { getCurrentSystemThreadId(), kind, name };
    StdDevEvent* event;
    bool due;
    {
        const juce::ScopedLock lock (eventsLock);
        auto found = events.find (key);
        if (found == events.end())
            found = events.emplace (StoredKey { key.threadId, kind, name }, StdDevEvent (name, makeLabel (name, kind))).first;
        event = &found->second;
        due = event->update (now, frameTime.load(), frameCount.load());
    }
    // The entry's label and statistics belong to this thread alone: the line is made unlocked.
    if (due)
        juce::Logger::outputDebugString (event->getReportLine (getCurrentThreadName()));
    return event;
}

const StdDevEvent* StdDevProfiler::findEvent (juce::StringRef name, LabelKind kind) const
{
    const juce::ScopedLock lock (eventsLock);
    const auto found = events.find (LookUpKey { getCurrentSystemThreadId(), kind, name });
    return found != events.end() ? &found->second : nullptr;
}

} // namespace tov
