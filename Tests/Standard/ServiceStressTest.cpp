#include "ServiceTestSupport.h"
#include <Tov/Standard/Program.h>
#include <chrono>
#include <memory>
#include <random>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{

/** A trigger of one service, with what its service did to it and what its callback saw. */
struct WatchedTrigger
{
    AsyncTrigger trigger;
    std::unique_ptr<ChangeCallback> callback;
    int64_t passesThatFiredIt = 0;
    int64_t changes = 0;
    int64_t changesOffItsThread = 0;
};

/** A threaded service that fires its own triggers many times in each pass, some of which it
    then cancels. Its triggers belong to its thread alone. */
struct FiringService
{
    FiringService (int index, std::atomic<int64_t>& totalChanges)
        : service ("Stress " + juce::String (index)), random ((unsigned) index)
    {
        service.context.addView (new EventRecordingView (events));
        for (int i = 0; i < 16; ++i)
        {
            auto watched = std::make_unique<WatchedTrigger>();
            auto* w = watched.get();
            w->callback = std::make_unique<ChangeCallback> (w->trigger, [this, w, &totalChanges]
            {
                ++w->changes;
                ++totalChanges;
                if (getCurrentThreadId() != service.getThreadId() || Service::getCurrentService() != &service)
                    ++w->changesOffItsThread;
            });
            triggers.push_back (std::move (watched));
        }
        // Each service ends its own loop once the run's time is up.
        service.onUpdated = [this]
        {
            if (std::chrono::steady_clock::now() >= endOfRun)
                return false;
            firePass();
            return true;
        };
    }

    void firePass()
    {
        for (auto& watched : triggers)
        {
            const int numTrigs = (int) (random() % 9);
            for (int i = 0; i < numTrigs; ++i)
                watched->trigger.trig();
            if (numTrigs > 0 && random() % 8 == 0)
                watched->trigger.untrig();
            else if (numTrigs > 0)
                ++watched->passesThatFiredIt;
        }
    }

    TestService service;
    std::vector<std::unique_ptr<WatchedTrigger>> triggers;
    std::vector<juce::String> events;
    std::mt19937 random;
    std::chrono::steady_clock::time_point endOfRun;
};

} // namespace

TEST (ServiceStressTest, EightServicesFlushTheirOwnTriggersOncePerPassForTenSeconds)
{
    TestProgram program;
    std::atomic<int64_t> totalChanges { 0 };
    std::vector<std::unique_ptr<FiringService>> services;
    for (int i = 1; i <= 8; ++i)
        services.push_back (std::make_unique<FiringService> (i, totalChanges));

    const auto endOfRun = std::chrono::steady_clock::now() + std::chrono::seconds (10);
    for (auto& firing : services)
    {
        firing->endOfRun = endOfRun;
        ASSERT_TRUE (firing->service.startService (false));
    }
    for (auto& firing : services)
    {
        auto& service = firing->service;
        EXPECT_TRUE (service.waitFor ([&service] { return service.numStopped == 1; }, 60000)) << service.getFriendlyName();
        service.stopService (20000);
    }

    int64_t expectedTotal = 0;
    for (auto& firing : services)
    {
        const auto& service = firing->service;
        SCOPED_TRACE (service.getFriendlyName());
        EXPECT_FALSE (service.isServiceRunning());
        EXPECT_EQ (service.numStarted, 1);
        EXPECT_EQ (service.numStopped, 1);
        EXPECT_GE (service.numUpdates, 10);
        EXPECT_EQ (firing->events, (std::vector<juce::String> { "enter [" + service.getFriendlyName() + "]", "leave", "deleted" }));
        for (auto& watched : firing->triggers)
        {
            EXPECT_EQ (watched->changes, watched->passesThatFiredIt);
            EXPECT_EQ (watched->changesOffItsThread, 0);
            EXPECT_FALSE (watched->trigger.isTriggered());
            expectedTotal += watched->passesThatFiredIt;
        }
    }
    EXPECT_EQ (totalChanges.load(), expectedTotal);
}
