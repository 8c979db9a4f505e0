#pragma once

#include "../MillisecondClock.h"
#include "StackEventProfiler.h"
#include "StdDevEvent.h"
#include "StdDevThreadEvents.h"
#include <atomic>
#include <map>
#include <memory>

namespace tov
{

/** Statistics of when scopes begin and end, and marks happen, within their frame: for each
    thread and label (name + " (Begin)", name + " (End)", or the mark's name) the mean and the
    standard deviation of the time since the frame began, over the last 100 occurrences.

    On frames whose number is a multiple of 100 each occurrence prints its line to the debug
    output (see StdDevEvent::getReportLine). Every thread is recorded. The statistics of a
    thread are its own and need no lock: only the table of threads has one, and a thread looks
    its statistics up there once. The frame's start and number are atomics that the rendering
    thread writes.

    An open scope is held on its thread's stack as the statistics of its Begin label, which
    know its name: a scope allocates nothing but the first time its label is seen.
*/
class StdDevProfiler : public StackEventProfiler<StdDevEvent*>
{
public:
    TOV_DECLARE_CLASS (StdDevProfiler, Profiler)

    /** Times are read from the clock (in milliseconds). */
    explicit StdDevProfiler (MillisecondClock clock = systemMillisecondClock) noexcept : clock (clock) {}

    /** Notes the start of the frame and counts it. */
    void beginFrame() override;
    void endFrame() override                            {}
    void markEvent (juce::StringRef name) override;

    uint64_t getFrameCount() const noexcept             { return frameCount.load(); }

    using LabelKind = StdDevThreadEvents::Kind;
    /** The statistics of the label of the calling thread; null while it has not happened. */
    const StdDevEvent* findEvent (juce::StringRef name, LabelKind kind)    { return getCurrentThreadEvents().find (name, kind); }

protected:
    StdDevEvent* makeEvent (juce::StringRef name, int category) override;
    void eventFinished (StdDevEvent*& event) override;
    bool recordsAllThreads() const override             { return true; }

private:
    MillisecondClock clock;
    std::atomic<double> frameTime { -1.0 };
    std::atomic<uint64_t> frameCount { 0 };
    juce::CriticalSection threadsLock;
    std::map<uint32_t, std::unique_ptr<StdDevThreadEvents>> threads;

    /** Counts an occurrence of the label on the calling thread, and prints its line when due. */
    StdDevEvent* record (juce::StringRef name, LabelKind kind);
    StdDevThreadEvents& getCurrentThreadEvents();
    StdDevThreadEvents& findCurrentThreadEvents();
};

} // namespace tov
