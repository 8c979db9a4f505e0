#pragma once

#include <Tov/Standard/ExecutionContext.h>
#include <Tov/Standard/Service.h>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

namespace tov::test
{

/** A service for tests: no peers, a context of its own, and hooks for each step.

    It registers with the running program from its own thread before Service::serviceStarted
    and unregisters after Service::serviceStopped, as an application's service does, so that
    getCurrentService and ExecutionContext::get find it there. Each step counts itself and
    wakes waitFor. A service still running when it goes is stopped first.

    The hooks are set before the service starts and run on its thread:
    - onStarted runs after the base and gives serviceStarted's result;
    - onUpdated runs before the base pass (so triggers it fires are flushed in the same pass);
      false ends the loop without the base pass;
    - onPostUpdated and onStopped run after their base steps.
*/
class TestService : public Service
{
public:
    explicit TestService (const juce::String& name = "Test");
    ~TestService() override;

    void getPeers (std::vector<Peer*>&) override        {}
    ExecutionContext& getExecutionContext() override    { return context; }

    /** Waits until the condition holds, checking it after each step of the service and every few
        milliseconds; false at the time-out. */
    bool waitFor (const std::function<bool()>& condition, int timeOutMilliseconds = 20000);

    // Public here, so that tests can call each step themselves.
    bool serviceStarted() override;
    bool serviceUpdated() override;
    void servicePostUpdated() override;
    void serviceStopped() override;
    using Service::flushAsyncTriggers;

    ExecutionContext context;

    std::function<bool()> onStarted;
    std::function<bool()> onUpdated;
    std::function<void()> onPostUpdated;
    std::function<void()> onStopped;

    std::atomic<int> numStarted { 0 }, numUpdates { 0 }, numPostUpdates { 0 }, numStopped { 0 };
    /** The thread that ran the last serviceStopped. */
    std::atomic<void*> stoppedOnThread { nullptr };

private:
    std::mutex stepLock;
    std::condition_variable stepDone;

    void notifyStep();
};

/** The thread id that juce and the services use for the calling thread. */
inline void* getCurrentThreadId()                   { return (void*) juce::Thread::getCurrentThreadId(); }

} // namespace tov::test
