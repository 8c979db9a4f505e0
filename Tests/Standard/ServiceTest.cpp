#include "ServiceTestSupport.h"
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Pointer/ObjectOwnedPointer.h>
#include <Tov/Standard/Program.h>

using namespace tov;
using namespace tov::test;

namespace
{

/** A program and a service on the test's thread whose context records its events. */
struct ServiceTest : public ::testing::Test
{
    TestProgram program;
    bool treeIsBack = (ensureServiceTestLibrary(), true);
    std::vector<juce::String> events;
    TestService service { "Audio" };

    ServiceTest()   { service.context.addView (new EventRecordingView (events)); }

    /** A predicate that holds once the service ran that many passes. */
    struct PassesDone : public ObjectPredicate
    {
        PassesDone (TestService& service, int count) : service (service), count (count) {}
        bool doesAcceptObject (Object*) override    { return service.numUpdates >= count; }
        TestService& service;
        int count;
    };

    const Object subject;
};

} // namespace

TEST_F (ServiceTest, AServiceIsStoppedUntilStartedAndItsInvalidThreadIdIsDeadDead)
{
    EXPECT_EQ (Service::getInvalidThreadId(), (void*) 0xdeaddead);
    EXPECT_EQ (service.getThreadId(), (void*) 0xdeaddead);
    EXPECT_FALSE (service.isServiceRunning());
}

TEST_F (ServiceTest, StartedOnTheCallerThreadItRunsThereAndAnswersWithServiceStarted)
{
    EXPECT_TRUE (service.startService (true));
    EXPECT_EQ (service.getThreadId(), getCurrentThreadId());
    EXPECT_TRUE (service.isServiceRunning());
    EXPECT_EQ (service.numStarted, 1);
    EXPECT_EQ (service.numUpdates, 0);

    TestService refusing ("Refusing");
    refusing.onStarted = [] { return false; };
    EXPECT_FALSE (refusing.startService (true));
    // It still counts as running: only stopService clears the thread id.
    EXPECT_TRUE (refusing.isServiceRunning());
    refusing.stopService (0);
    EXPECT_FALSE (refusing.isServiceRunning());
}

TEST_F (ServiceTest, StopServiceOfAServiceOnTheCallerThreadCallsServiceStoppedOnceThere)
{
    ASSERT_TRUE (service.startService (true));
    service.stopService (1000);
    EXPECT_EQ (service.numStopped, 1);
    EXPECT_EQ (service.stoppedOnThread, getCurrentThreadId());
    EXPECT_EQ (service.getThreadId(), Service::getInvalidThreadId());

    // Stopped already: nothing runs a second time.
    service.stopService (1000);
    EXPECT_EQ (service.numStopped, 1);
}

TEST_F (ServiceTest, GetCurrentServiceFindsOnlyARegisteredServiceOfTheCallingThread)
{
    EXPECT_EQ (Service::getCurrentService(), nullptr);
    ASSERT_TRUE (service.startService (true));
    EXPECT_EQ (Service::getCurrentService(), &service);
    EXPECT_EQ (&ExecutionContext::get(), &service.context);

    service.stopService (0);
    EXPECT_EQ (Service::getCurrentService(), nullptr);
    EXPECT_EQ (&ExecutionContext::get(), &program.getProgramExecutionContext());
}

TEST_F (ServiceTest, TheServiceBlockOpensOncePerStartAndClosesAtTheStopBeforeTheViewsGo)
{
    ASSERT_TRUE (service.startService (true));
    service.serviceStarted();
    EXPECT_EQ (events, std::vector<juce::String> { "enter [Audio]" });

    service.stopService (0);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "leave", "deleted" }));
    EXPECT_EQ (service.context.getNumViews(), 0u);

    // A new start opens the block again.
    service.context.addView (new EventRecordingView (events));
    ASSERT_TRUE (service.startService (true));
    service.stopService (0);
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "leave", "deleted", "enter [Audio]", "leave", "deleted" }));
}

TEST_F (ServiceTest, ServiceStoppedFlushesThenDeletesTheRootsThenFinalizesTheTriggers)
{
    std::vector<juce::String> order;
    SpacesService spaces;
    setMarkerRoot (spaces.scene, "scene root", order);
    setMarkerRoot (spaces.audio, "audio root", order);
    ASSERT_TRUE (spaces.startService (true));

    AsyncTrigger pending, firedByDeletion;
    ChangeCallback pendingCallback (pending, [&] { order.push_back ("pending flushed"); });
    ChangeCallback lateCallback (firedByDeletion, [&] { order.push_back ("late trigger flushed"); });
    pending.trig();
    spaces.onStopped = [&] { order.push_back ("stopped"); };
    // A root that fires a trigger as it goes: the finalizing flush still delivers it.
    auto* sceneRoot = spaces.scene.getRootObject();
    struct FireOnDestruction : public View
    {
        explicit FireOnDestruction (AsyncTrigger& trigger) : trigger (trigger) {}
        void deletedCallback (Object*) override { trigger.trig(); }
        AsyncTrigger& trigger;
    } fire (firedByDeletion);
    fire.attachObject (sceneRoot);

    spaces.stopService (0);
    EXPECT_EQ (order, (std::vector<juce::String> { "pending flushed", "scene root deleted", "audio root deleted",
                                                   "late trigger flushed", "stopped" }));
    EXPECT_EQ (spaces.scene.getRootObject(), nullptr);
    EXPECT_EQ (spaces.audio.getRootObject(), nullptr);
    EXPECT_TRUE (spaces.getAsyncTriggerManager().isFinalized());
}

TEST_F (ServiceTest, CallServiceUpdateRunsThePostUpdateOnlyWhenAskedAndWhenThePassWentOn)
{
    ASSERT_TRUE (service.startService (true));
    EXPECT_TRUE (service.callServiceUpdate (true));
    EXPECT_EQ (service.numUpdates, 1);
    EXPECT_EQ (service.numPostUpdates, 1);

    EXPECT_TRUE (service.callServiceUpdate (false));
    EXPECT_EQ (service.numUpdates, 2);
    EXPECT_EQ (service.numPostUpdates, 1);

    service.onUpdated = [] { return false; };
    EXPECT_FALSE (service.callServiceUpdate (true));
    EXPECT_EQ (service.numUpdates, 3);
    EXPECT_EQ (service.numPostUpdates, 1);
}

TEST_F (ServiceTest, EachPassFlushesTheTriggersFiredBeforeIt)
{
    ASSERT_TRUE (service.startService (true));
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    service.onUpdated = [&] { trigger.trig(); trigger.trig(); return true; };
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE (service.callServiceUpdate (true));
    EXPECT_EQ (changes.count, 3);
}

TEST_F (ServiceTest, InsideABypassTransactionTriggersWaitForThePassAfterIt)
{
    ASSERT_TRUE (service.startService (true));
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);

    service.startBypassTransaction();
    EXPECT_TRUE (service.isInsideBypassTransaction());
    trigger.trig();
    ASSERT_TRUE (service.callServiceUpdate (true));
    service.flushAsyncTriggers (service.context);
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (trigger.isTriggered());

    service.finishBypassTransaction();
    EXPECT_FALSE (service.isInsideBypassTransaction());
    ASSERT_TRUE (service.callServiceUpdate (true));
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ServiceTest, InsideAWaitTriggersWaitForThePassAfterIt)
{
    ASSERT_TRUE (service.startService (true));
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    std::vector<bool> insideLoop;
    service.onUpdated = [&] { insideLoop.push_back (service.isInsideUpdateUntilLoop()); trigger.trig(); return true; };

    EXPECT_TRUE (service.updateUntil ("Job", PassesDone (service, 3), subject, 20000, nullptr, nullptr));
    EXPECT_EQ (insideLoop, (std::vector<bool> { true, true, true }));
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (trigger.isTriggered());

    service.onUpdated = nullptr;
    ASSERT_TRUE (service.callServiceUpdate (true));
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ServiceTest, AStoppedServiceFlushesNoTriggers)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    service.getAsyncTriggerManager().addTrigger (&trigger);
    service.flushAsyncTriggers (service.context);
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (service.getAsyncTriggerManager().getNumPendingTriggers(), 1u);
    service.getAsyncTriggerManager().removeTrigger (&trigger);
}

TEST_F (ServiceTest, UpdateUntilWithAPredicateAlreadyTrueRunsNoPass)
{
    ASSERT_TRUE (service.startService (true));
    EXPECT_TRUE (service.updateUntil ("Job", EqualsObjectPredicate (&subject), subject, 0, nullptr, nullptr));
    EXPECT_EQ (service.numUpdates, 0);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
    EXPECT_EQ (events, std::vector<juce::String> { "enter [Audio]" });
}

TEST_F (ServiceTest, UpdateUntilWithATimeOutOfZeroReportsTheTimeOutWithoutAPass)
{
    ASSERT_TRUE (service.startService (true));
    EXPECT_FALSE (service.updateUntil ("Job", PassesDone (service, 1), subject, 0, nullptr, nullptr));
    EXPECT_EQ (service.numUpdates, 0);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
    EXPECT_EQ (events, (std::vector<juce::String> { "enter [Audio]", "error Time-out while waiting for Job" }));
}

TEST_F (ServiceTest, UpdateUntilTimesOutOnceItsTimeHasPassed)
{
    ASSERT_TRUE (service.startService (true));
    const auto start = juce::Time::getMillisecondCounter();
    EXPECT_FALSE (service.updateUntil ("Nothing", PassesDone (service, 1 << 30), subject, 30, nullptr, nullptr));
    EXPECT_GE (juce::Time::getMillisecondCounter() - start, 30u);
    EXPECT_GE (service.numUpdates, 1);
    EXPECT_EQ (service.numPostUpdates, service.numUpdates);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
    EXPECT_EQ (events.back(), "error Time-out while waiting for Nothing");
}

TEST_F (ServiceTest, UpdateUntilRunsNoPostUpdateInThePassThatEndsTheWait)
{
    ASSERT_TRUE (service.startService (true));
    EXPECT_TRUE (service.updateUntil ("Job", PassesDone (service, 3), subject, 20000, nullptr, nullptr));
    EXPECT_EQ (service.numUpdates, 3);
    EXPECT_EQ (service.numPostUpdates, 2);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
}

TEST_F (ServiceTest, UpdateUntilWithAStoppedOtherServiceRunsOnePassBeforeReportingIt)
{
    ASSERT_TRUE (service.startService (true));
    TestService other ("Video");
    other.getStatus().setError ("decoder crashed");
    bool insideDuringPass = false;
    service.onUpdated = [&] { insideDuringPass = service.isInsideUpdateUntilLoop(); return true; };

    EXPECT_FALSE (service.updateUntil ("Job", PassesDone (service, 5), subject, 20000, &other, nullptr));
    EXPECT_EQ (service.numUpdates, 1);
    EXPECT_EQ (service.numPostUpdates, 0);
    EXPECT_TRUE (insideDuringPass);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
    EXPECT_EQ (events.back(), "error Video has exited prematurely - decoder crashed");
}

TEST_F (ServiceTest, UpdateUntilIsInterruptedWhenThePassStopsTheService)
{
    ASSERT_TRUE (service.startService (true));
    service.onUpdated = [] { return false; };
    EXPECT_FALSE (service.updateUntil ("Job", PassesDone (service, 5), subject, 20000, nullptr, nullptr));
    EXPECT_EQ (service.numUpdates, 1);
    EXPECT_FALSE (service.isInsideUpdateUntilLoop());
    EXPECT_EQ (events.back(), "error Job interrupted by service stop");
}

TEST_F (ServiceTest, UpdateUntilReportsOnTheGivenContext)
{
    ASSERT_TRUE (service.startService (true));
    std::vector<juce::String> elsewhere;
    ExecutionContext context;
    context.addView (new EventRecordingView (elsewhere));
    EXPECT_FALSE (service.updateUntil ("Job", PassesDone (service, 1), subject, 0, nullptr, &context));
    EXPECT_EQ (elsewhere, std::vector<juce::String> { "error Time-out while waiting for Job" });
    EXPECT_EQ (events, std::vector<juce::String> { "enter [Audio]" });
}

TEST_F (ServiceTest, ANestedWaitClearsTheFlagOfTheOuterOne)
{
    ASSERT_TRUE (service.startService (true));
    std::vector<bool> insideLoop;
    int calls = 0;
    service.onUpdated = [&]
    {
        insideLoop.push_back (service.isInsideUpdateUntilLoop());
        if (++calls == 2)
            EXPECT_TRUE (service.updateUntil ("Inner", PassesDone (service, 3), subject, 20000, nullptr, nullptr));
        return true;
    };
    EXPECT_TRUE (service.updateUntil ("Outer", PassesDone (service, 5), subject, 20000, nullptr, nullptr));
    // The second pass of the outer wait runs two passes of the inner one; the inner wait leaves
    // the flag clear, and the outer wait's last pass runs without it.
    EXPECT_EQ (insideLoop, (std::vector<bool> { true, true, true, true, false }));
}

TEST_F (ServiceTest, UpdateUntilPointerIsSetWaitsUntilAPassSetsThePointer)
{
    ASSERT_TRUE (service.startService (true));
    std::vector<juce::String> order;
    ObjectSpace space ("scene");
    service.onUpdated = [&]
    {
        if (service.numUpdates == 1)
            setMarkerRoot (space, "root", order);
        return true;
    };
    EXPECT_TRUE (service.updateUntilPointerIsSet ("Root", space.getRootObjectPointer(), 20000, nullptr));
    EXPECT_EQ (service.numUpdates, 2);
}

TEST_F (ServiceTest, UpdateUntilRootExistsNamesTheTaskAfterTheSpaceAndMirroring)
{
    ASSERT_TRUE (service.startService (true));
    ObjectSpace space ("scene");
    EXPECT_FALSE (service.updateUntilRootExists (space, 0, nullptr));
    EXPECT_EQ (events.back(), "error Time-out while waiting for Scene mirroring");
}

TEST_F (ServiceTest, UpdateUntilRootDeletionNamesTheTaskAfterTheSpaceAlone)
{
    ASSERT_TRUE (service.startService (true));
    std::vector<juce::String> order;
    ObjectSpace space ("scene");
    setMarkerRoot (space, "root", order);
    EXPECT_FALSE (service.updateUntilRootDeletion (space, 0, nullptr));
    EXPECT_EQ (events.back(), "error Time-out while waiting for Scene");

    service.onUpdated = [&] { space.deleteRootObject(); return true; };
    EXPECT_TRUE (service.updateUntilRootDeletion (space, 20000, nullptr));
    EXPECT_EQ (order, std::vector<juce::String> { "root deleted" });
    // Without a root the wait is over before it starts.
    EXPECT_TRUE (service.updateUntilRootDeletion (space, 0, nullptr));
}

TEST_F (ServiceTest, TheFriendlyNameIsTheName)
{
    EXPECT_EQ (service.getFriendlyName(), "Audio");
    EXPECT_EQ (TestService().getFriendlyName(), "Test");
}

TEST_F (ServiceTest, StatusAndTriggerManagerAreTheServicesOwn)
{
    const TestService& constService = service;
    service.getStatus().setWarning ("slow");
    EXPECT_EQ (&constService.getStatus(), &service.getStatus());
    EXPECT_EQ (constService.getStatus().getMessage(), "slow");
    EXPECT_EQ (&constService.getAsyncTriggerManager(), &service.getAsyncTriggerManager());
    EXPECT_EQ (service.getHistory (service, nullptr), nullptr);
}

TEST_F (ServiceTest, TheClassServiceIsDeclaredAbstractInTheStandardLibrary)
{
    auto* serviceClass = tov::getClass ("Service");
    ASSERT_NE (serviceClass, nullptr);
    EXPECT_EQ (serviceClass, &Service::staticClass);
    EXPECT_TRUE (serviceClass->isAbstract());
    EXPECT_TRUE (Class::inheritsFrom (serviceClass, &NameableObject::staticClass));
    EXPECT_NE (tov::getClass ("AsyncTrigger"), nullptr);
}
