#pragma once

#include <juce_core/juce_core.h>
#include <atomic>

namespace tov
{

class Service;

/** The thread of a service that runs on a thread of its own, named after it.

    Its body starts the service, runs passes until asked to exit or until a pass asks to
    stop, and stops the service. An exception that escapes the service is reported on the
    service's context and ends the process through the crash handling.

    A stop that times out leaves the thread running: it cannot be killed safely. The
    service then abandons it, and keeps the object alive; the thread ends the step it is
    in and leaves without touching the service again.
*/
class InternalJuceThread : public juce::Thread
{
public:
    explicit InternalJuceThread (Service& service);
    ~InternalJuceThread() override;

    void run() override;

    /** From the stopping thread, after a stop that timed out: no further step touches the service. */
    void abandon() noexcept                         { phase = abandoned; }

private:
    enum Phase { betweenSteps, insideStep, abandoned };

    Service& service;
    std::atomic<int> phase { betweenSteps };

    /** Runs the step unless the thread was abandoned; false when it was, before or during the step. */
    template <class Step>
    bool runStep (Step&& step);

    JUCE_DECLARE_NON_COPYABLE (InternalJuceThread)
};

} // namespace tov
