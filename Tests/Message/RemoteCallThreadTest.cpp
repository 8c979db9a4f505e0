#include "RemoteCallTestSupport.h"
#include <Tov/Standard/Program.h>
#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>

using namespace tov;
using namespace tov::test;

// Calls between services on threads of their own. Each service waits between its passes until
// an envelop wakes it, as an application's service does; the caller's calls run in its own
// pass, so that its waits are nested loops of its own thread.
namespace
{
class PacedPeerService : public PeerService
{
public:
    using PeerService::PeerService;

    void servicePostUpdated() override
    {
        PeerService::servicePostUpdated();
        if (auto* thread = juce::Thread::getCurrentThread())
            thread->wait (20);
    }
};

class RemoteCallThreadTest : public RemoteCallTestBase
{
protected:
    PacedPeerService calleeService { "Callee" };
    TestPeer& callee = calleeService.addPeer (makeIdentifier (2));
    Counter& counter = addCounterTo (callee);

    /** Runs the calls once, in the first pass of the service's thread; the nested passes of
        its waits skip them. */
    static void callOnceFromItsThread (PeerService& service, std::function<void()> calls, std::atomic<bool>& finished)
    {
        auto started = std::make_shared<std::atomic<bool>> (false);
        service.onUpdated = [calls, started, &finished]
        {
            if (! started->exchange (true))
            {
                calls();
                finished = true;
            }
            return true;
        };
    }

    std::vector<int64_t> callAddFromAThread (PeerService& service, TestPeer& caller, int numCalls)
    {
        std::vector<int64_t> results;
        std::atomic<bool> finished { false };
        callOnceFromItsThread (service, [&]
        {
            for (int i = 0; i < numCalls; ++i)
            {
                Owned<Object> result (MethodRemoteCall (counter, new AddToCounterMethod (1))
                                          .callPerform (caller, *callee.getIncomingMessageTarget(), 20000, nullptr));
                results.push_back (result != nullptr ? static_cast<Integer&> (*result).get() : -1);
            }
        }, finished);
        service.startService (false);
        EXPECT_TRUE (service.waitFor ([&] { return finished.load(); }, 60000));
        service.stopService (20000);
        return results;
    }
};
} // namespace

TEST_F (RemoteCallThreadTest, ACallerOnItsThreadWaitsForTheAnswersOfACalleeOnAnother)
{
    ASSERT_TRUE (calleeService.startService (false));
    PacedPeerService callerService { "Caller" };
    auto& caller = callerService.addPeer (makeIdentifier (1));
    const auto results = callAddFromAThread (callerService, caller, 20);
    std::vector<int64_t> expected (20);
    std::iota (expected.begin(), expected.end(), 1);
    EXPECT_EQ (results, expected);
    calleeService.stopService (20000);
    EXPECT_EQ (counter.value.get(), 20);
}

TEST_F (RemoteCallThreadTest, TwoCallerThreadsShareOneCallee)
{
    ASSERT_TRUE (calleeService.startService (false));
    PacedPeerService first { "First" }, second { "Second" };
    auto& firstCaller = first.addPeer (makeIdentifier (1));
    auto& secondCaller = second.addPeer (makeIdentifier (3));
    std::vector<int64_t> firstResults, secondResults;
    std::thread other ([&] { secondResults = callAddFromAThread (second, secondCaller, 15); });
    firstResults = callAddFromAThread (first, firstCaller, 15);
    other.join();
    calleeService.stopService (20000);

    // Each call saw its own addition: the thirty results are 1 to 30, each once.
    auto all = firstResults;
    all.insert (all.end(), secondResults.begin(), secondResults.end());
    std::sort (all.begin(), all.end());
    std::vector<int64_t> expected (30);
    std::iota (expected.begin(), expected.end(), 1);
    EXPECT_EQ (all, expected);
    EXPECT_TRUE (std::is_sorted (firstResults.begin(), firstResults.end()));
    EXPECT_EQ (counter.value.get(), 30);
}

TEST_F (RemoteCallThreadTest, AsynchronousAnswersCompleteOnTheCallersServiceThread)
{
    ASSERT_TRUE (calleeService.startService (false));
    PacedPeerService callerService { "Caller" };
    auto& caller = callerService.addPeer (makeIdentifier (1));
    RecordingCompletionRoutine routine;
    std::atomic<void*> callerThread { nullptr }, completionThread { nullptr };
    std::atomic<bool> sent { false };
    callOnceFromItsThread (callerService, [&]
    {
        callerThread = getCurrentThreadId();
        for (int i = 0; i < 10; ++i)
            MethodRemoteCall (counter, new AddToCounterMethod (1)).callPerformAsync (caller, *callee.getIncomingMessageTarget(), routine, nullptr);
    }, sent);
    callerService.onPostUpdated = [&]
    {
        if (routine.getNumCompletions() > 0 && completionThread.load() == nullptr)
            completionThread = getCurrentThreadId();
    };
    ASSERT_TRUE (callerService.startService (false));
    ASSERT_TRUE (callerService.waitFor ([&] { return routine.getNumCompletions() == 10; }, 60000));
    callerService.stopService (20000);
    calleeService.stopService (20000);

    EXPECT_EQ (completionThread.load(), callerThread.load());
    auto lines = routine.getLines();
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ (lines[(size_t) i], juce::String (i) + " " + juce::String (i + 1));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}
