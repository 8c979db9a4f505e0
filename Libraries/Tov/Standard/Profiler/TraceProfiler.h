#pragma once

#include "StackEventProfiler.h"
#include "TraceEvent.h"

namespace tov
{

/** Prints every scope of every thread as it begins and ends, and every mark, to the debug
    output: name + " -> Begin", name + " -> End", name + " -> Tick". */
class TraceProfiler : public StackEventProfiler<TraceEvent>
{
public:
    TOV_DECLARE_CLASS (TraceProfiler, Profiler)

    void endFrame() override                        {}
    void markEvent (juce::StringRef name) override;

protected:
    TraceEvent makeEvent (juce::StringRef name, int category) override;
    void eventFinished (TraceEvent& event) override;
    bool recordsAllThreads() const override         { return true; }
};

} // namespace tov
