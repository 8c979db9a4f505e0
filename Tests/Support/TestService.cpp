#include "TestService.h"
#include <Tov/Standard/Program.h>
#include <chrono>

namespace tov::test
{

TestService::TestService (const juce::String& name) : Service (name)
{
}

TestService::~TestService()
{
    if (isServiceRunning())
        stopService (20000);
}

bool TestService::serviceStarted()
{
    if (Program::isStillRunning())
        Program::get().registerService (*this);
    Service::serviceStarted();
    const bool result = onStarted ? onStarted() : true;
    ++numStarted;
    notifyStep();
    return result;
}

bool TestService::serviceUpdated()
{
    const bool result = (! onUpdated || onUpdated()) && Service::serviceUpdated();
    ++numUpdates;
    notifyStep();
    return result;
}

void TestService::servicePostUpdated()
{
    Service::servicePostUpdated();
    if (onPostUpdated)
        onPostUpdated();
    ++numPostUpdates;
    notifyStep();
}

void TestService::serviceStopped()
{
    Service::serviceStopped();
    if (onStopped)
        onStopped();
    if (Program::isStillRunning())
        Program::get().unregisterService();
    stoppedOnThread = getCurrentThreadId();
    ++numStopped;
    notifyStep();
}

void TestService::notifyStep()
{
    const std::lock_guard<std::mutex> lock (stepLock);
    stepDone.notify_all();
}

// Each step wakes the waiter; the thread's last act, clearing the thread id, comes after the last
// step, so the condition is also checked again every few milliseconds.
bool TestService::waitFor (const std::function<bool()>& condition, int timeOutMilliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds (timeOutMilliseconds);
    std::unique_lock<std::mutex> lock (stepLock);
    while (! condition())
    {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        stepDone.wait_for (lock, std::chrono::milliseconds (5));
    }
    return true;
}

} // namespace tov::test
