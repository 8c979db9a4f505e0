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

StdDevEvent* StdDevProfiler::record (juce::StringRef name, LabelKind kind)
{
    const double now = clock();
    auto& event = getCurrentThreadEvents().get (name, kind);
    if (event.update (now, frameTime.load(), frameCount.load()))
        juce::Logger::outputDebugString (event.getReportLine (getCurrentThreadName()));
    return &event;
}

// The table of threads is looked up under the lock once per thread: the thread keeps what it found.
StdDevThreadEvents& StdDevProfiler::getCurrentThreadEvents()
{
    return findOncePerThread<StdDevThreadEvents> ([this]() -> StdDevThreadEvents& { return findCurrentThreadEvents(); });
}

StdDevThreadEvents& StdDevProfiler::findCurrentThreadEvents()
{
    const juce::ScopedLock lock (threadsLock);
    auto& events = threads[getCurrentSystemThreadId()];
    if (events == nullptr)
        events = std::make_unique<StdDevThreadEvents>();
    return *events;
}

} // namespace tov
