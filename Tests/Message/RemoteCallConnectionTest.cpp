#include "RemoteCallTestSupport.h"
#include "Network/ConnectionTestSupport.h"
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>

using namespace tov;
using namespace tov::test;

// Calls over a real connection on loopback, in one process: the caller's peer on the test's
// thread sends through the client, the callee's peer on a service thread of its own receives
// through the server, and the answers come back the same way.
namespace
{
class RemoteCallConnectionTest : public RemoteCallTestBase
{
protected:
    PeerService callerService { "Caller" };
    TestPeer& caller = callerService.addPeer (makeIdentifier (1));
    PeerService calleeService { "Callee" };
    TestPeer& callee = calleeService.addPeer (makeIdentifier (2));
    Counter& counter = addCounterTo (callee);
    TestServer server;
    InterprocessConnection client;
    RecordingConnectionListener clientListener;

    void SetUp() override
    {
        ASSERT_TRUE (connectThroughServerForwardingToProgram (server, client, clientListener));
        ASSERT_TRUE (callerService.startService (true));
        ASSERT_TRUE (calleeService.startService (false));
    }

    void TearDown() override
    {
        calleeService.stopService (20000);
        client.disconnect();
        client.setListener (nullptr);
    }

    /** The callee as a far target, on the client's connection. */
    MessageTarget& farCallee()
    {
        Owned<Integer> identifier (makeIdentifier (2));
        return InterprocessConnectionMessageTarget::getOrCreateThrough (client, *identifier);
    }
};
} // namespace

TEST_F (RemoteCallConnectionTest, AMethodCallCrossesTheConnectionAndFindsItsObjectByAddress)
{
    Owned<Object> result (MethodRemoteCall (counter, new AddToCounterMethod (4)).callPerform (caller, farCallee(), 20000, nullptr));
    ASSERT_NE (result, nullptr);
    EXPECT_EQ (result->toString(), "4");
    Owned<Object> second (MethodRemoteCall (counter, new AddToCounterMethod (4)).callPerform (caller, farCallee(), 20000, nullptr));
    ASSERT_NE (second, nullptr);
    EXPECT_EQ (second->toString(), "8");
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallConnectionTest, GetSoftwareVersionCrossesTheConnection)
{
    Owned<Object> result (SingletonMethodRemoteCall (new ProgramGetSoftwareVersionMethod()).callPerform (caller, farCallee(), 20000, nullptr));
    auto* version = dynamic_cast<SoftwareVersion*> (result.get());
    ASSERT_NE (version, nullptr);
    EXPECT_EQ (version->versionNumberToString ("."), "1.2.3");
}

TEST_F (RemoteCallConnectionTest, AnErrorOfTheCalleeReachesTheCallersContext)
{
    LineRecordingContext callerContext;
    EXPECT_FALSE (MethodRemoteCall (counter, new RefusingCounterMethod()).callPerformAndCheckSuccessStatus (callerContext, caller, farCallee(), 20000, nullptr));
    EXPECT_EQ (callerContext.lines, std::vector<juce::String> { "error the counter refuses" });
}

TEST_F (RemoteCallConnectionTest, ALostConnectionCompletesNothingUntilTheRoutinesAreCancelled)
{
    // The callee's service is stopped: the queries arrive and wait, unanswered.
    calleeService.stopService (20000);
    RecordingCompletionRoutine routine;
    ASSERT_TRUE (MethodRemoteCall (counter, new AddToCounterMethod (1)).callPerformAsync (caller, farCallee(), routine, nullptr));
    ASSERT_TRUE (MethodRemoteCall (counter, new AddToCounterMethod (1)).callPerformAsync (caller, farCallee(), routine, nullptr));
    ASSERT_TRUE (client.waitUntilAllMessagesAreSent (20000));

    client.disconnect();
    for (int pass = 0; pass < 10; ++pass)
        callerService.callServiceUpdate (true);
    EXPECT_EQ (routine.getNumCompletions(), 0u);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 2u);

    caller.cancelAllCompletionRoutines();
    auto completions = routine.getLines();
    std::sort (completions.begin(), completions.end());
    EXPECT_EQ (completions, (std::vector<juce::String> { "0 null", "1 null" }));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}
