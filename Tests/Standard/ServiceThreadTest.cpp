#include "ServiceTestSupport.h"
#include <Tov/Standard/DebugOutputExecutionContextView.h>
#include <Tov/Standard/Program.h>
#include <stdexcept>
#include <thread>
#include <utility>

using namespace tov;
using namespace tov::test;

namespace
{

/** A program and a service of its own thread whose context records its events. The events
    are read once the service has stopped, or before it starts. */
struct ServiceThreadTest : public ::testing::Test
{
    TestProgram program;
    bool treeIsBack = (ensureServiceTestLibrary(), true);
    std::vector<juce::String> events;
    TestService service { "Audio" };

    ServiceThreadTest()   { service.context.addView (new EventRecordingView (events)); }

    void TearDown() override
    {
        service.stopService (20000);
    }
};

/** Signals its event when the thread that made it ends: the last thing the thread does. */
struct ThreadEndSignal
{
    juce::WaitableEvent* event = nullptr;
    ~ThreadEndSignal()      { if (event != nullptr) event->signal(); }
};

} // namespace

TEST_F (ServiceThreadTest, RunsOnAThreadOfItsOwnNamedAfterItUntilStopped)
{
    juce::String threadName;
    service.onStarted = [&] { threadName = juce::Thread::getCurrentThread()->getThreadName(); return true; };

    EXPECT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numPostUpdates >= 3; }));
    EXPECT_TRUE (service.isServiceRunning());
    void* serviceThread = service.getThreadId();
    EXPECT_NE (serviceThread, getCurrentThreadId());

    service.stopService (20000);
    EXPECT_EQ (threadName, "Audio");
    EXPECT_EQ (service.numStarted, 1);
    EXPECT_EQ (service.numStopped, 1);
    EXPECT_EQ (service.stoppedOnThread, serviceThread);
    EXPECT_EQ (service.getThreadId(), Service::getInvalidThreadId());
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "leave", "deleted" }));
}

TEST_F (ServiceThreadTest, OnItsThreadTheServiceIsCurrentAndReportsToItsOwnContext)
{
    Service* currentThere = nullptr;
    ExecutionContext* contextThere = nullptr;
    service.onStarted = [&]
    {
        currentThere = Service::getCurrentService();
        contextThere = &ExecutionContext::get();
        ExecutionContext::get().information ("started");
        return true;
    };
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numStarted == 1; }));

    EXPECT_EQ (Service::getCurrentService(), nullptr);
    Service* currentElsewhere = &service;
    std::thread other ([&] { currentElsewhere = Service::getCurrentService(); });
    other.join();
    EXPECT_EQ (currentElsewhere, nullptr);

    service.stopService (20000);
    EXPECT_EQ (currentThere, &service);
    EXPECT_EQ (contextThere, &service.context);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "information started", "leave", "deleted" }));
}

TEST_F (ServiceThreadTest, APassThatReturnsFalseStopsTheServiceOnItsThread)
{
    service.onUpdated = [this] { return service.numUpdates < 2; };
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numStopped == 1 && ! service.isServiceRunning(); }));
    EXPECT_EQ (service.numUpdates, 3);
    EXPECT_EQ (service.numPostUpdates, 2);
    EXPECT_EQ (service.numStopped, 1);

    // The thread object stays until stopService, which stops nothing more.
    service.stopService (20000);
    EXPECT_EQ (service.numStopped, 1);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "leave", "deleted" }));
}

TEST_F (ServiceThreadTest, AServiceThatFailsToStartRunsNoPassAndCountsAsRunningUntilStopped)
{
    service.onStarted = [] { return false; };
    EXPECT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numStarted == 1; }));
    EXPECT_TRUE (service.isServiceRunning());

    service.stopService (20000);
    EXPECT_FALSE (service.isServiceRunning());
    EXPECT_EQ (service.numUpdates, 0);
    EXPECT_EQ (service.numStopped, 0);
}

TEST_F (ServiceThreadTest, ARestartedServiceRunsOnANewThreadAndOpensItsBlockAgain)
{
    for (int round = 1; round <= 2; ++round)
    {
        ASSERT_TRUE (service.startService (false));
        ASSERT_TRUE (service.waitFor ([this] { return service.numPostUpdates >= 1; }));
        service.stopService (20000);
        EXPECT_EQ (service.numStopped, round);
        service.numPostUpdates = 0;
        if (round == 1)
            service.context.addView (new EventRecordingView (events));
    }
    EXPECT_EQ (service.numStarted, 2);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "leave", "deleted", "enter [Audio]", "leave", "deleted" }));
}

TEST_F (ServiceThreadTest, TriggersFiredOnTheServiceThreadAreFlushedThereOncePerPass)
{
    AsyncTrigger trigger;
    std::vector<void*> flushedOn;
    ChangeCallback callback (trigger, [&] { flushedOn.push_back (getCurrentThreadId()); });
    service.onUpdated = [&]
    {
        if (service.numUpdates < 3)
            for (int i = 0; i < 5; ++i)
                trigger.trig();
        return true;
    };
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (service.waitFor ([this] { return service.numPostUpdates >= 4; }));
    void* serviceThread = service.getThreadId();
    service.stopService (20000);
    EXPECT_EQ (flushedOn, (std::vector<void*> (3, serviceThread)));
}

TEST_F (ServiceThreadTest, AWaitForAnotherServiceEndsWhenThatServiceStops)
{
    TestService video ("Video");
    video.getStatus().setError ("no signal");
    ASSERT_TRUE (video.startService (false));
    ASSERT_TRUE (video.waitFor ([&] { return video.numPostUpdates >= 1; }));

    juce::WaitableEvent waiting;
    bool result = true;
    const Object subject;
    bool waited = false;
    service.onUpdated = [&]
    {
        // The wait runs passes of its own, which call this again.
        if (! std::exchange (waited, true))
        {
            waiting.signal();
            result = service.updateUntil ("Sync", OwnedPointerIsSet(), subject, 60000, &video, nullptr);
        }
        return true;
    };
    ASSERT_TRUE (service.startService (false));
    ASSERT_TRUE (waiting.wait (20000));
    video.stopService (20000);
    ASSERT_TRUE (service.waitFor ([this] { return service.numUpdates >= 2; }));
    service.stopService (20000);

    EXPECT_FALSE (result);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "error Video has exited prematurely - no signal", "leave", "deleted" }));
}

TEST_F (ServiceThreadTest, AStopThatTimesOutReportsTheKillAndLeavesTheThreadAlone)
{
    juce::WaitableEvent entered, release;
    // Signalled as the thread's very last act, so it has to outlive the test.
    static juce::WaitableEvent threadEnded;
    std::vector<juce::String> stuckEvents;
    TestService stuck ("Stuck");
    stuck.context.addView (new EventRecordingView (stuckEvents));
    stuck.onUpdated = [&]
    {
        thread_local ThreadEndSignal endSignal;
        endSignal.event = &threadEnded;
        entered.signal();
        release.wait();
        return true;
    };

    ASSERT_TRUE (stuck.startService (false));
    ASSERT_TRUE (entered.wait (20000));
    stuck.stopService (100);
    EXPECT_EQ (stuckEvents, (std::vector<juce::String> { "enter [Stuck]", "error Service: Stuck killed by force" }));
    EXPECT_FALSE (stuck.isServiceRunning());
    EXPECT_EQ (stuck.getThreadId(), (void*) 0xdeaddead);

    // The thread finishes its pass, then leaves without stopping the service or touching it again.
    release.signal();
    ASSERT_TRUE (threadEnded.wait (20000));
    EXPECT_EQ (stuck.numUpdates, 1);
    EXPECT_EQ (stuck.numPostUpdates, 1);
    EXPECT_EQ (stuck.numStopped, 0);
    EXPECT_EQ (stuck.getThreadId(), (void*) 0xdeaddead);
    EXPECT_EQ (stuckEvents.size(), 2u);
}

//==============================================================================
namespace
{
/** A threaded service whose context writes its errors to the standard error, that fails as told. */
void runFailingService (std::function<bool()> onUpdated, std::function<void()> onStopped)
{
    TestService service ("Failing");
    service.context.addView (new DebugOutputExecutionContextView());
    service.onUpdated = std::move (onUpdated);
    service.onStopped = std::move (onStopped);
    service.startService (false);
    service.waitFor ([] { return false; }, 20000);
    service.stopService (20000);
}
} // namespace

TEST (ServiceDeathTest, AStandardExceptionIsReportedOnTheServicesContextAndEndsTheProcess)
{
    GTEST_FLAG_SET (death_test_style, "threadsafe");
    EXPECT_DEATH (runFailingService ([]() -> bool { throw std::runtime_error ("broken pipe"); }, nullptr),
                  "Error: Standard exception throw: broken pipe");
}

TEST (ServiceDeathTest, AnyOtherExceptionIsReportedAsUnknownAndEndsTheProcess)
{
    GTEST_FLAG_SET (death_test_style, "threadsafe");
    EXPECT_DEATH (runFailingService ([]() -> bool { throw 42; }, nullptr), "Error: Unknown exception throw");
}

TEST (ServiceDeathTest, AnExceptionWhileStoppingIsReportedToo)
{
    GTEST_FLAG_SET (death_test_style, "threadsafe");
    EXPECT_DEATH (runFailingService ([] { return false; }, [] { throw std::logic_error ("half closed"); }),
                  "Error: Standard exception throw: half closed");
}
