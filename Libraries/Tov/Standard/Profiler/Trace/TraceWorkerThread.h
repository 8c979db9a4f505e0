#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class TraceWriter;

/** The "TraceWorker" thread of a TraceWriter: it names itself on the stream ("Trace", system id
    0, sorted last), then ticks every 17 milliseconds until it is stopped. */
class TraceWorkerThread : public juce::Thread
{
public:
    explicit TraceWorkerThread (TraceWriter& writer) : juce::Thread ("TraceWorker"), writer (writer) {}
    ~TraceWorkerThread() override;

    void run() override;

    static constexpr int tickPeriodMilliseconds = 17;

private:
    TraceWriter& writer;
};

} // namespace tov
