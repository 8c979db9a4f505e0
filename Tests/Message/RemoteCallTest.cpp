#include "RemoteCallTestSupport.h"
#include "Network/ConnectionTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <Tov/Message/InterprocessConnectionMessageTarget.h>
#include <Tov/Message/RemoteCall/RemoteCallQueryMessage.h>
#include <Tov/Message/RemoteCall/RemoteCallResultMessage.h>
#include <Tov/Message/RemoteCall/ReturnedValueCompletionRoutine.h>
#include <Tov/Network/InterprocessConnection.h>
#include <Tov/Standard/Program.h>
#include <Tov/Standard/ProgramGetSoftwareVersionMethod.h>

using namespace tov;
using namespace tov::test;

// Calls between two peers of one service, which the test's thread runs: the caller's waits
// run the service's passes, and with them the callee's.
namespace
{
class RemoteCallTest : public RemoteCallTestBase
{
protected:
    // Before the service, whose context writes into it until the service stops.
    std::vector<juce::String> lines;
    PeerService service { "Caller" };
    bool serviceRuns = service.startService (true);
    TestPeer& caller = service.addPeer (makeIdentifier (1));
    TestPeer& callee = service.addPeer (makeIdentifier (2));
    Counter& counter = addCounterTo (callee);

    void SetUp() override
    {
        addLineRecordingView (service.context, lines);
    }

    MessageTarget& calleeTarget()                   { return *callee.getIncomingMessageTarget(); }

    MethodRemoteCall addCall (int64_t amount)       { return MethodRemoteCall (counter, new AddToCounterMethod (amount)); }

    /** Runs passes of the service until the routine has that many completions. */
    bool runUntilCompleted (const RecordingCompletionRoutine& routine, size_t count)
    {
        for (int pass = 0; pass < 100 && routine.getNumCompletions() < count; ++pass)
            service.callServiceUpdate (true);
        return routine.getNumCompletions() == count;
    }

    static juce::String textOf (Object* result)
    {
        Owned<Object> owned (result);
        return owned != nullptr ? owned->toString() : juce::String ("null");
    }

    bool hasLineStartingWith (const juce::String& start) const
    {
        return std::any_of (lines.begin(), lines.end(), [&] (const juce::String& line) { return line.startsWith (start); });
    }
};

/** A connection that never connected: a target on it takes nothing. */
class NowhereTarget
{
public:
    MessageTarget& get()                            { return InterprocessConnectionMessageTarget::getOrCreateThrough (connection, *identifier); }

private:
    InterprocessConnection connection;
    Owned<Integer> identifier { makeIdentifier (99) };
};
} // namespace

TEST_F (RemoteCallTest, ASynchronousMethodCallReturnsTheResultOfTheMethodOnTheCalleesObject)
{
    const auto call = addCall (5);
    EXPECT_EQ (textOf (call.callPerform (caller, calleeTarget(), 5000, nullptr)), "5");
    EXPECT_EQ (textOf (call.callPerform (caller, calleeTarget(), 5000, nullptr)), "10");
    EXPECT_EQ (counter.value.get(), 10);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallTest, GetSoftwareVersionOfTheProgramIsCallableRemotely)
{
    SingletonMethodRemoteCall call (new ProgramGetSoftwareVersionMethod());
    Owned<Object> result (call.callPerform (caller, calleeTarget(), 5000, nullptr));
    auto* version = dynamic_cast<SoftwareVersion*> (result.get());
    ASSERT_NE (version, nullptr);
    EXPECT_EQ (version->versionNumberToString ("."), "1.2.3");
    EXPECT_EQ (version->getBranchName().get(), "main");
    EXPECT_NE (version, &program.getSoftwareVersion());
}

TEST_F (RemoteCallTest, TheCalleeReportsTheCallAndItsResultInABlock)
{
    const auto call = addCall (3);
    Owned<Object> result (call.callPerform (caller, calleeTarget(), 5000, nullptr));
    ASSERT_EQ (lines.size(), 3u);
    EXPECT_EQ (lines[0], "enter Perform RPC " + call.toString());
    EXPECT_EQ (lines[1], "information  => 3");
    EXPECT_EQ (lines[2], "leave");
}

TEST_F (RemoteCallTest, ANullResultIsReportedAndAnsweredAsNull)
{
    MethodRemoteCall call (counter, new SilentCounterMethod());
    EXPECT_EQ (call.callPerform (caller, calleeTarget(), 5000, nullptr), nullptr);
    EXPECT_EQ (lines, (std::vector<juce::String> { "enter Perform RPC " + call.toString(), "information Null result", "leave" }));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallTest, ACallToATargetThatDoesNotExistReturnsNullAtOnce)
{
    NowhereTarget nowhere;
    const auto call = addCall (1);
    const int passesBefore = service.numUpdates;
    EXPECT_EQ (call.callPerform (caller, nowhere.get(), 60000, nullptr), nullptr);
    EXPECT_EQ (service.numUpdates, passesBefore);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
    EXPECT_TRUE (lines.empty());
}

TEST_F (RemoteCallTest, AFailureToSendCompletesTheRoutineAtOnceWithNull)
{
    NowhereTarget nowhere;
    RecordingCompletionRoutine routine;
    EXPECT_FALSE (addCall (1).callPerformAsync (caller, nowhere.get(), routine, makeIdentifier (4)));
    EXPECT_EQ (routine.getLines(), std::vector<juce::String> { "4 null" });
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallTest, AutomaticIdentifiersCountFromZeroAndTheSecondCallHasOne)
{
    RecordingCompletionRoutine routine;
    ASSERT_TRUE (addCall (1).callPerformAsync (caller, calleeTarget(), routine, nullptr));
    ASSERT_TRUE (addCall (2).callPerformAsync (caller, calleeTarget(), routine, nullptr));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 2u);
    ASSERT_TRUE (runUntilCompleted (routine, 2));
    EXPECT_EQ (routine.getLines(), (std::vector<juce::String> { "0 1", "1 3" }));
    EXPECT_EQ (caller.getNewAutomaticRemoteCallIdentifier(), 2u);
}

TEST_F (RemoteCallTest, ACallerGivenIdentifierEqualToAWaitingOneTakesOverItsEntry)
{
    RecordingCompletionRoutine first, second;
    ASSERT_TRUE (addCall (1).callPerformAsync (caller, calleeTarget(), first, makeIdentifier (7)));
    ASSERT_TRUE (addCall (2).callPerformAsync (caller, calleeTarget(), second, makeIdentifier (7)));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 1u);
    ASSERT_TRUE (runUntilCompleted (second, 1));
    // The second answer finds the entry gone, and is dropped.
    for (int pass = 0; pass < 3; ++pass)
        service.callServiceUpdate (true);
    EXPECT_EQ (second.getLines(), std::vector<juce::String> { "7 1" });
    EXPECT_TRUE (first.getLines().empty());
    EXPECT_EQ (counter.value.get(), 3);
}

TEST_F (RemoteCallTest, AMethodCallWithoutSelfAnswersAnErrorThatTheCheckTurnsIntoFalse)
{
    MethodRemoteCall call;
    call.method.set (new AddToCounterMethod (1), false);
    LineRecordingContext callerContext;
    EXPECT_FALSE (call.callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    EXPECT_EQ (callerContext.lines, std::vector<juce::String> { "error MethodRemoteCall error: self is not set" });
    // Reported on the callee's side too.
    EXPECT_TRUE (std::find (lines.begin(), lines.end(), "error MethodRemoteCall error: self is not set") != lines.end());
    EXPECT_EQ (counter.value.get(), 0);
}

TEST_F (RemoteCallTest, AMethodCallWithoutMethodAnswersAnError)
{
    MethodRemoteCall call;
    call.self.setAddressOf (&counter, false);
    LineRecordingContext callerContext;
    EXPECT_FALSE (call.callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    EXPECT_EQ (callerContext.lines, std::vector<juce::String> { "error MethodRemoteCall error: method is not set" });
}

TEST_F (RemoteCallTest, ASingletonMethodCallWithoutMethodAnswersAnError)
{
    SingletonMethodRemoteCall call;
    LineRecordingContext callerContext;
    EXPECT_FALSE (call.callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    EXPECT_EQ (callerContext.lines, std::vector<juce::String> { "error SingletonMethodRemoteCall error: method is not set" });
}

TEST_F (RemoteCallTest, ASuccessStatusThatIsNoErrorChecksTrueAndAnErrorFalse)
{
    ResettableCounter& resettable = *create<ResettableCounter>();
    callee.scene.setRootObject (&resettable, true);
    resettable.value.set (4, false);
    LineRecordingContext callerContext;
    Owned<Method> reset (ResettableCounter::getStaticClass().createMethod ("reset"));
    EXPECT_TRUE (MethodRemoteCall (resettable, reset.release()).callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    EXPECT_EQ (resettable.value.get(), 0);
    EXPECT_FALSE (MethodRemoteCall (counter, new RefusingCounterMethod()).callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    EXPECT_EQ (callerContext.lines.back(), "error the counter refuses");
}

TEST_F (RemoteCallTest, AResultOfAnotherClassFailsTheCheckAsAnUnexpectedValue)
{
    LineRecordingContext callerContext;
    const auto call = addCall (2);
    EXPECT_FALSE (call.callPerformAndCheckSuccessStatus (callerContext, caller, calleeTarget(), 5000, nullptr));
    ASSERT_EQ (callerContext.lines.size(), 1u);
    EXPECT_EQ (callerContext.lines[0], "error " + MethodRemoteCall::getStaticClass().getFriendlyName() + " returned an unexpected value!");
    EXPECT_TRUE (callerContext.lines[0].endsWith (" returned an unexpected value!"));
}

TEST_F (RemoteCallTest, TheCallSentIsACopyAndTheCallerKeepsItsOwn)
{
    auto call = addCall (2);
    RecordingCompletionRoutine routine;
    ASSERT_TRUE (call.callPerformAsync (caller, calleeTarget(), routine, nullptr));
    static_cast<AddToCounterMethod&> (*call.method).amount.set (50, false);
    ASSERT_TRUE (runUntilCompleted (routine, 1));
    EXPECT_EQ (routine.getLines(), std::vector<juce::String> { "0 2" });
    EXPECT_EQ (call.method.get()->getParent(), &call.method);
}

TEST_F (RemoteCallTest, MessagesKeepBeingProcessedWhileACallWaits)
{
    // Posted before the call: the caller processes it during its wait.
    Owned<Integer> callerIdentifier (makeIdentifier (1));
    ASSERT_TRUE (Program::get().postEnvelopToMessageTarget (*callerIdentifier, new Envelop (makeIdentifier (9), new RecordingMessage ("meanwhile")), nullptr));
    EXPECT_EQ (textOf (addCall (1).callPerform (caller, calleeTarget(), 5000, nullptr)), "1");
    EXPECT_EQ (caller.lines, std::vector<juce::String> { "meanwhile from 9" });
}

TEST_F (RemoteCallTest, CancelAllCompletesEveryWaitingRoutineWithNull)
{
    RecordingCompletionRoutine routine;
    ASSERT_TRUE (addCall (1).callPerformAsync (caller, calleeTarget(), routine, makeIdentifier (10)));
    ASSERT_TRUE (addCall (1).callPerformAsync (caller, calleeTarget(), routine, makeIdentifier (11)));
    caller.cancelAllCompletionRoutines();
    auto completions = routine.getLines();
    std::sort (completions.begin(), completions.end());
    EXPECT_EQ (completions, (std::vector<juce::String> { "10 null", "11 null" }));
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
    // The answers come later and find nobody.
    for (int pass = 0; pass < 3; ++pass)
        service.callServiceUpdate (true);
    EXPECT_EQ (routine.getNumCompletions(), 2u);
    EXPECT_EQ (counter.value.get(), 2);
}

TEST_F (RemoteCallTest, ARoutineThatDiedIsNotCalledAndItsAnswerIsDeleted)
{
    auto* routine = new RecordingCompletionRoutine();
    ASSERT_TRUE (addCall (1).callPerformAsync (caller, calleeTarget(), *routine, nullptr));
    routine->deleteThis();
    EXPECT_EQ (caller.popCompletionRoutineFromIdentifier (Integer (5)), nullptr);

    // The answer, caught before it reaches the caller, is watched until it is gone.
    std::vector<Envelop*> answers;
    callee.processIncomingMessages (service.context);
    caller.getIncomingMessageTarget()->takeEnvelops (answers);
    ASSERT_EQ (answers.size(), 1u);
    auto& answer = static_cast<RemoteCallResultMessage&> (*answers[0]->getMessage (0));
    ASSERT_NE (answer.resultValue.get(), nullptr);
    DeletionWatcher resultWatcher (*answer.resultValue);
    ASSERT_TRUE (caller.getIncomingMessageTarget()->postEnvelop (answers[0]));
    service.callServiceUpdate (true);
    EXPECT_TRUE (resultWatcher.deleted);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallTest, APeerThatGoesCompletesItsWaitingCallsWithNull)
{
    RecordingCompletionRoutine routine;
    {
        PeerService other { "Other" };
        auto& leaving = other.addPeer (makeIdentifier (5));
        ASSERT_TRUE (addCall (1).callPerformAsync (leaving, calleeTarget(), routine, makeIdentifier (3)));
    }
    EXPECT_EQ (routine.getLines(), std::vector<juce::String> { "3 null" });
    // Its answer finds no peer: the callee says so.
    service.callServiceUpdate (true);
    EXPECT_TRUE (hasLineStartingWith ("error Could not send result message to 5: Target not found"));
}

TEST_F (RemoteCallTest, ACallThatTimesOutReturnsNullWithTheWaitsText)
{
    PeerService idle { "Idle" };
    auto& sleeper = idle.addPeer (makeIdentifier (3));
    addCounterTo (sleeper);
    MethodRemoteCall call (counter, new AddToCounterMethod (1));
    EXPECT_EQ (call.callPerform (caller, *sleeper.getIncomingMessageTarget(), 200, nullptr), nullptr);
    EXPECT_EQ (lines, std::vector<juce::String> { "error Time-out while waiting for call " + call.getFriendlyName() });
    // The routine died with the wait: its entry stays until an answer comes.
    EXPECT_EQ (caller.getNumCompletionRoutines(), 1u);
}

TEST_F (RemoteCallTest, ALateAnswerIsDroppedWithoutAWordOnTheCallersSide)
{
    PeerService idle { "Idle" };
    auto& sleeper = idle.addPeer (makeIdentifier (3));
    addCounterTo (sleeper);
    EXPECT_EQ (addCall (1).callPerform (caller, *sleeper.getIncomingMessageTarget(), 100, nullptr), nullptr);
    lines.clear();

    idle.callServiceUpdate (true);
    for (int pass = 0; pass < 3; ++pass)
        service.callServiceUpdate (true);
    EXPECT_TRUE (lines.empty());
    EXPECT_EQ (caller.getNumCompletionRoutines(), 0u);
}

TEST_F (RemoteCallTest, WithoutAServiceOnTheCallingThreadASynchronousCallReturnsNull)
{
    Program::get().unregisterService();
    const auto call = addCall (1);
    EXPECT_EQ (call.callPerform (caller, calleeTarget(), 5000, nullptr), nullptr);
    Program::get().registerService (service);
    EXPECT_EQ (caller.getNumCompletionRoutines(), 1u);
}

TEST_F (RemoteCallTest, AQueryWithoutCallOrIdentifierDoesNothing)
{
    RemoteCallQueryMessage empty;
    empty.process (service.context, *caller.getIncomingMessageTarget(), calleeTarget());
    RemoteCallQueryMessage noIdentifier (new MethodRemoteCall (counter, new AddToCounterMethod (1)), nullptr);
    Owned<Integer> callerIdentifier (makeIdentifier (1));
    noIdentifier.process (service.context, *callerIdentifier, calleeTarget());
    EXPECT_TRUE (lines.empty());
    EXPECT_EQ (counter.value.get(), 0);
}
