#include "InternalJuceThread.h"
#include "ExceptionFilter.h"
#include "Service.h"
#include <exception>
#include <pthread.h>

namespace tov
{

InternalJuceThread::InternalJuceThread (Service& service)
    : juce::Thread (service.name.get()), service (service)
{
}

InternalJuceThread::~InternalJuceThread() = default;

// A failing service takes the process down after saying why. JUCE would swallow the
// exception at the end of run(), so the crash handling is called here.
template <class Step>
bool InternalJuceThread::runStep (Step&& step)
{
    int expected = betweenSteps;
    if (! phase.compare_exchange_strong (expected, insideStep))
        return false;

    try
    {
        step();
    }
    catch (const std::exception& exception)
    {
        service.getExecutionContext().error (juce::String ("Standard exception throw: ") + exception.what());
        std::terminate();
    }
    catch (...)
    {
        service.getExecutionContext().error ("Unknown exception throw");
        std::terminate();
    }

    expected = insideStep;
    return phase.compare_exchange_strong (expected, betweenSteps);
}

void InternalJuceThread::run()
{
    // A stop that times out cancels the thread; a cancellation would unwind through JUCE's
    // catch-all and abort the process. The thread is abandoned instead (see Service::stopService).
    pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
    const ExceptionFilter::ThreadScope crashScope;

    // A service that fails to start keeps its thread id: stopService clears it.
    bool started = false;
    if (! runStep ([this, &started] { service.setThreadIdToCurrent(); started = service.serviceStarted(); }) || ! started)
        return;

    // A pass that returns false is the service stopping itself.
    bool goOn = true;
    while (goOn && ! threadShouldExit())
        if (! runStep ([this, &goOn] { goOn = service.callServiceUpdate (true); }))
            return;

    runStep ([this] { service.serviceStopped(); service.markStopped(); });
}

} // namespace tov
