#include "AtomicTestSupport.h"
#include "Support/LogTestSupport.h"
#include "Support/ScopedErrorCapture.h"
#include "Support/TestService.h"
#include <Tov/Atomic/AsyncTrigger.h>
#include <Tov/Core/ProtectAgainstDeletion.h>
#include <Tov/Core/StateObjectExporter.h>
#include <functional>
#include <memory>
#include <vector>

using namespace tov;
using namespace tov::test;

namespace
{

/** A running program and a service on the test's thread, driven by hand. */
struct AsyncTriggerTest : public ::testing::Test
{
    TestProgram program;
    bool treeIsBack = (TestProgram::ensureTestLibraryTree(), true);
    TestService service;
    bool serviceRuns = service.startService (true);

    AsyncTriggerManager& manager()      { return service.getAsyncTriggerManager(); }
    void pass()                         { ASSERT_TRUE (service.callServiceUpdate (true)); }
};

const juce::String deletedTrigMessage = "AsyncTrigger::trig() called on a deleted object. Please report how this happened to support@kelvotech.com";
const juce::String deletedUntrigMessage = "AsyncTrigger::untrig() called on a deleted object. Please report how this happened to support@kelvotech.com";

} // namespace

TEST_F (AsyncTriggerTest, TenTrigsAndOneFlushGiveOneChanged)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    for (int i = 0; i < 10; ++i)
        trigger.trig();

    EXPECT_TRUE (trigger.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 1u);
    EXPECT_EQ (changes.count, 0);
    pass();
    EXPECT_EQ (changes.count, 1);
    EXPECT_FALSE (trigger.isTriggered());
    pass();
    EXPECT_EQ (changes.count, 1);
}

TEST_F (AsyncTriggerTest, TrigInsideAChangedOfAFlushIsDeliveredOnTheNextFlush)
{
    AsyncTrigger first, second;
    ChangeCounter secondChanges (second);
    ChangeCallback firesSecond (first, [&] { second.trig(); });

    first.trig();
    pass();
    EXPECT_EQ (secondChanges.count, 0);
    EXPECT_TRUE (second.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 1u);
    pass();
    EXPECT_EQ (secondChanges.count, 1);
}

TEST_F (AsyncTriggerTest, ATriggerThatFiresItselfInItsCallbackWaitsForTheNextFlush)
{
    AsyncTrigger trigger;
    int calls = 0;
    ChangeCallback again (trigger, [&] { if (++calls < 3) trigger.trig(); });

    pass();
    trigger.trig();
    pass();
    EXPECT_EQ (calls, 1);
    pass();
    EXPECT_EQ (calls, 2);
    pass();
    pass();
    EXPECT_EQ (calls, 3);
}

TEST_F (AsyncTriggerTest, UntrigBeforeTheFlushCancelsTheNotification)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    trigger.untrig();

    EXPECT_FALSE (trigger.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 0u);
    pass();
    EXPECT_EQ (changes.count, 0);
}

TEST_F (AsyncTriggerTest, UntrigOfATriggerNotFiredDoesNothing)
{
    AsyncTrigger trigger, other;
    other.trig();
    trigger.untrig();
    EXPECT_EQ (manager().getNumPendingTriggers(), 1u);
}

TEST_F (AsyncTriggerTest, ACallbackThatDestroysAnotherPendingTriggerRestartsTheWalk)
{
    AsyncTrigger first, last;
    auto* middle = new AsyncTrigger();
    int middleChanges = 0;
    std::vector<juce::String> order;
    auto* middleCallback = new ChangeCallback (*middle, [&] { ++middleChanges; });
    ChangeCallback destroysMiddle (first, [&] { order.push_back ("first"); delete middleCallback; delete middle; middle = nullptr; });
    ChangeCallback lastCallback (last, [&] { order.push_back ("last"); });

    first.trig();
    middle->trig();
    last.trig();
    EXPECT_EQ (manager().getNumPendingTriggers(), 3u);
    pass();

    EXPECT_EQ (middle, nullptr);
    EXPECT_EQ (middleChanges, 0);
    EXPECT_EQ (order, (std::vector<juce::String> { "first", "last" }));
    EXPECT_EQ (manager().getNumPendingTriggers(), 0u);
}

TEST_F (AsyncTriggerTest, AnUntrigInACallbackRestartsTheWalkAndFlushesNobodyTwice)
{
    AsyncTrigger a, b, c;
    std::vector<juce::String> order;
    ChangeCallback aCallback (a, [&] { order.push_back ("a"); });
    ChangeCallback bCallback (b, [&] { order.push_back ("b"); c.untrig(); });
    ChangeCallback cCallback (c, [&] { order.push_back ("c"); });

    a.trig();
    b.trig();
    c.trig();
    pass();
    EXPECT_EQ (order, (std::vector<juce::String> { "a", "b" }));
}

TEST_F (AsyncTriggerTest, TriggersAreFlushedInTheOrderTheyWereFired)
{
    AsyncTrigger a, b, c;
    std::vector<juce::String> order;
    ChangeCallback aCallback (a, [&] { order.push_back ("a"); });
    ChangeCallback bCallback (b, [&] { order.push_back ("b"); });
    ChangeCallback cCallback (c, [&] { order.push_back ("c"); });

    c.trig();
    a.trig();
    b.trig();
    a.trig();
    pass();
    EXPECT_EQ (order, (std::vector<juce::String> { "c", "a", "b" }));
}

TEST_F (AsyncTriggerTest, AfterFinalizeTrigSetsTheFlagAndNothingMore)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    manager().finalize();
    EXPECT_TRUE (manager().isFinalized());

    trigger.trig();
    EXPECT_TRUE (trigger.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 0u);
    pass();
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (trigger.isTriggered());
}

TEST_F (AsyncTriggerTest, FinalizeFlushesWhatIsPending)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    manager().finalize();
    EXPECT_EQ (changes.count, 1);
}

TEST_F (AsyncTriggerTest, SaveGivesAVoidNode)
{
    AsyncTrigger trigger;
    trigger.trig();
    EXPECT_EQ (StateObjectExporter::make (trigger, 0, false)->getType(), StateType::voidType);
    EXPECT_EQ (StateObjectExporter::make (trigger, exportWithoutDefaults, false)->getType(), StateType::voidType);
}

TEST_F (AsyncTriggerTest, LoadCallsChangedAndReturnsTrueWhateverTheState)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    EXPECT_TRUE (loadFromState (trigger, std::make_shared<State>()).result);
    EXPECT_TRUE (loadFromState (trigger, std::make_shared<State> ("anything")).result);
    EXPECT_EQ (changes.count, 2);
    EXPECT_FALSE (trigger.isTriggered());
}

TEST_F (AsyncTriggerTest, TrigOnADeletedObjectIsReported)
{
    ScopedErrorCapture capture;
    AsyncTrigger trigger;
    trigger.setUniqueIdentifier (UniqueIdentifier::getDeletedObjectIdentifier());
    trigger.trig();

    EXPECT_EQ (capture.errors, std::vector<juce::String> { deletedTrigMessage });
    EXPECT_FALSE (trigger.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 0u);
}

TEST_F (AsyncTriggerTest, UntrigOnADeletedObjectIsReported)
{
    AsyncTrigger trigger;
    trigger.trig();
    ScopedErrorCapture capture;
    trigger.setUniqueIdentifier (UniqueIdentifier::getDeletedObjectIdentifier());
    trigger.untrig();

    EXPECT_EQ (capture.errors, std::vector<juce::String> { deletedUntrigMessage });
    EXPECT_TRUE (trigger.isTriggered());
    EXPECT_EQ (manager().getNumPendingTriggers(), 1u);
    trigger.setUniqueIdentifier ({});
}

TEST_F (AsyncTriggerTest, FlushWithoutNotifyClearsTheFlagSilently)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    trigger.flush (false);
    EXPECT_FALSE (trigger.isTriggered());
    trigger.flush (true);
    EXPECT_EQ (changes.count, 0);
    pass();
    EXPECT_EQ (changes.count, 0);
}

TEST_F (AsyncTriggerTest, DestroyingAPendingTriggerTakesItOffTheList)
{
    auto trigger = std::make_unique<AsyncTrigger>();
    trigger->trig();
    AsyncTrigger other;
    other.trig();
    EXPECT_EQ (manager().getNumPendingTriggers(), 2u);
    trigger.reset();
    EXPECT_EQ (manager().getNumPendingTriggers(), 1u);
    pass();
}

namespace
{
/** An object that owns a trigger and counts its own destruction. */
class TriggerOwner : public Triggerable
{
public:
    explicit TriggerOwner (int& destructions) : destructions (destructions) {}
    ~TriggerOwner() override                { ++destructions; }

    AsyncTrigger refresh;

private:
    int& destructions;
};
} // namespace

TEST_F (AsyncTriggerTest, AnOwnerReleasedInTheCallbackOfItsTriggerGoesWhenTheCallbackIsOver)
{
    int destructions = 0;
    auto* owner = new TriggerOwner (destructions);
    owner->refresh.setParent (owner);
    owner->incrementReferenceCounter();
    int destructionsInCallback = -1;
    // The trigger does not own its views: this one outlives it.
    auto view = std::make_unique<ChangeCallback> (owner->refresh, [&]
    {
        owner->decrementReferenceCounter (true);
        destructionsInCallback = destructions;
    });

    owner->refresh.trig();
    pass();
    EXPECT_EQ (destructionsInCallback, 0);
    EXPECT_EQ (destructions, 1);
    EXPECT_EQ (manager().getNumPendingTriggers(), 0u);
}

TEST_F (AsyncTriggerTest, ATriggerOfAStoppedServiceIsNotFlushed)
{
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    service.stopService (0);
    EXPECT_EQ (changes.count, 1);

    trigger.trig();
    service.flushAsyncTriggers (service.context);
    EXPECT_EQ (changes.count, 1);
    EXPECT_TRUE (trigger.isTriggered());
}

TEST (AsyncTriggerWithoutServiceTest, ATriggerFiredOutsideAnyServiceStaysTriggered)
{
    TestProgram program;
    AsyncTrigger trigger;
    ChangeCounter changes (trigger);
    trigger.trig();
    EXPECT_TRUE (trigger.isTriggered());

    TestService service;
    ASSERT_TRUE (service.startService (true));
    EXPECT_EQ (service.getAsyncTriggerManager().getNumPendingTriggers(), 0u);
    EXPECT_TRUE (service.callServiceUpdate (true));
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (trigger.isTriggered());

    // Fired again: it is already triggered, so it is not listed now either.
    trigger.trig();
    EXPECT_EQ (service.getAsyncTriggerManager().getNumPendingTriggers(), 0u);
}

TEST (AsyncTriggerWithoutServiceTest, WithoutAProgramATriggerIsMarkedAndDestroyedQuietly)
{
    auto trigger = std::make_unique<AsyncTrigger>();
    trigger->trig();
    EXPECT_TRUE (trigger->isTriggered());
    trigger->untrig();
    EXPECT_FALSE (trigger->isTriggered());
    trigger.reset();
}

TEST (AsyncTriggerManagerTest, RemoveTriggerTakesOutEveryOccurrence)
{
    AsyncTriggerManager manager;
    AsyncTrigger trigger, other;
    manager.addTrigger (&trigger);
    manager.addTrigger (&other);
    manager.addTrigger (&trigger);
    manager.removeTrigger (&trigger);
    EXPECT_EQ (manager.getNumPendingTriggers(), 1u);
}

TEST (AsyncTriggerManagerTest, AddingAfterFinalizeIsIgnored)
{
    AsyncTriggerManager manager;
    AsyncTrigger trigger;
    manager.finalize();
    manager.addTrigger (&trigger);
    EXPECT_EQ (manager.getNumPendingTriggers(), 0u);
}

TEST (AsyncTriggerManagerTest, AnEntryMetAgainAfterARestartIsNotFlushedTwice)
{
    AsyncTriggerManager manager;
    AsyncTrigger a, b, c;
    int aChanges = 0, bChanges = 0;
    ChangeCallback aCallback (a, [&] { ++aChanges; });
    // b takes c off the list: the walk starts again at a, which is no longer triggered.
    ChangeCallback bCallback (b, [&] { ++bChanges; manager.removeTrigger (&c); });

    for (auto* trigger : { &a, &b, &c })
    {
        trigger->trig();
        manager.addTrigger (trigger);
    }
    manager.flushTriggers();
    EXPECT_EQ (aChanges, 1);
    EXPECT_EQ (bChanges, 1);
    EXPECT_TRUE (c.isTriggered());
    EXPECT_EQ (manager.getNumPendingTriggers(), 0u);
}

TEST (AsyncTriggerManagerTest, WhatCallbacksAddWaitsInTheSecondListUntilTheNextFlush)
{
    AsyncTriggerManager manager;
    AsyncTrigger first, second;
    ChangeCallback addsSecond (first, [&] { second.trig(); manager.addTrigger (&second); });
    int secondChanges = 0;
    ChangeCallback secondCallback (second, [&] { ++secondChanges; });

    first.trig();
    manager.addTrigger (&first);
    manager.flushTriggers();
    EXPECT_EQ (secondChanges, 0);
    EXPECT_EQ (manager.getNumPendingTriggers(), 1u);
    manager.flushTriggers();
    EXPECT_EQ (secondChanges, 1);
    EXPECT_EQ (manager.getNumPendingTriggers(), 0u);
}

TEST (ProtectAgainstDeletionTest, HoldsTheNearestOwnedObjectAndLeavesUnownedOnesAlone)
{
    int destructions = 0;
    auto* owner = new TriggerOwner (destructions);
    owner->removeStaticAllocationFlag();
    owner->refresh.setParent (owner);
    {
        ProtectAgainstDeletion unowned (owner->refresh);
        EXPECT_EQ (unowned.getProtectedObject(), nullptr);
    }
    EXPECT_EQ (owner->getReferenceCount(), 0u);

    owner->incrementReferenceCounter();
    {
        ProtectAgainstDeletion protection (owner->refresh);
        EXPECT_EQ (protection.getProtectedObject(), owner);
        EXPECT_EQ (owner->getReferenceCount(), 2u);
        owner->decrementReferenceCounter (true);
        EXPECT_EQ (destructions, 0);
    }
    EXPECT_EQ (destructions, 1);

    AsyncTrigger onTheStack;
    ProtectAgainstDeletion nothing (onTheStack);
    EXPECT_EQ (nothing.getProtectedObject(), nullptr);
    EXPECT_TRUE (onTheStack.hasStaticAllocationFlag());
}
