#include "TraceWorkerThread.h"
#include "TraceWriter.h"
#include <pthread.h>

namespace tov
{

TraceWorkerThread::~TraceWorkerThread()
{
    signalThreadShouldExit();
    notify();
    stopThread (-1);
}

void TraceWorkerThread::run()
{
    // A stop that timed out must not cancel the thread (see the platform notes on stopThread).
    pthread_setcancelstate (PTHREAD_CANCEL_DISABLE, nullptr);
    writer.writeThreadInfo ("Trace", 0, 0x7fffffff);
    while (! threadShouldExit())
    {
        writer.tick();
        wait (tickPeriodMilliseconds);
    }
}

} // namespace tov
