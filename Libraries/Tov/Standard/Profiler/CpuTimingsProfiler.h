#pragma once

#include "../MillisecondClock.h"
#include "CpuTimingsRangeEvent.h"
#include "ProfilerNames.h"
#include "StackEventProfiler.h"
#include <vector>

namespace tov
{

/** The scopes of the rendering thread, reported at the end of each frame: the line
    "Kelvo frame report", then one line per scope that ended in the frame, parents before
    their children, each indented by its depth: name + ";" + its duration in milliseconds.

    Everything happens on the rendering thread: other threads are not recorded.
*/
class CpuTimingsProfiler : public StackEventProfiler<CpuTimingsRangeEvent>
{
public:
    TOV_DECLARE_CLASS (CpuTimingsProfiler, Profiler)

    /** Times are read from the clock (in milliseconds). */
    explicit CpuTimingsProfiler (MillisecondClock clock = systemMillisecondClock) noexcept : clock (clock) {}

    /** Starts a new report. */
    void beginFrame() override;
    /** Prints the report of the frame. */
    void endFrame() override;
    void markEvent (juce::StringRef name) override;

    struct Marker
    {
        juce::String name;
        double time;
    };

    /** The scopes that ended since the frame began, in the order they ended. */
    const std::vector<CpuTimingsRangeEvent>& getFinishedEvents() const noexcept    { return finishedEvents; }
    const std::vector<Marker>& getMarkers() const noexcept                          { return markers; }

protected:
    CpuTimingsRangeEvent makeEvent (juce::StringRef name, int category) override;
    void eventFinished (CpuTimingsRangeEvent& event) override;

private:
    MillisecondClock clock;
    ProfilerNames names;
    std::vector<CpuTimingsRangeEvent> finishedEvents;
    std::vector<Marker> markers;
};

} // namespace tov
