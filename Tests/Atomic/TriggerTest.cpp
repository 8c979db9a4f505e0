#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (TriggerTest, TrigCountsAndNotifies)
{
    Trigger trigger;
    ChangeCounter counter (trigger);
    trigger.trig();
    trigger.trig();
    EXPECT_EQ (trigger.getCount(), 2);
    EXPECT_EQ (counter.count, 2);
    trigger.setCount (2);
    trigger.setCount (7, false);
    EXPECT_EQ (counter.count, 2);
    EXPECT_EQ (trigger.toString(), "7");
}

TEST (TriggerTest, ComparesCounts)
{
    Trigger a (3), b (3), c (4);
    EXPECT_TRUE (a.equals (b));
    EXPECT_FALSE (a.equals (c));
}

TEST (TriggerTest, SavesTheCount)
{
    Trigger source (5), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "5");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.getCount(), 5);
}

TEST (TriggerTest, SavingWithoutDefaultsLeavesAVoidNodeThatIsRemoved)
{
    Trigger trigger (5);
    EXPECT_EQ (StateObjectExporter::make (trigger, exportWithoutDefaults, false)->getType(), StateType::voidType);

    auto triggerable = createOwned<Triggerable>();
    triggerable->trigger.trig();
    EXPECT_EQ (triggerable->makeState (false)->toShortString(), "{trigger = 1}");
    auto pruned = triggerable->makeState (true);
    EXPECT_EQ (pruned->getType(), StateType::voidType);
    EXPECT_EQ (pruned->findVariable ("trigger"), -1);
}

TEST (TriggerTest, AVoidStateLeavesTheCount)
{
    Trigger trigger (3);
    EXPECT_TRUE (loadFromState (trigger, std::make_shared<State>()).result);
    EXPECT_EQ (trigger.getCount(), 3);
    EXPECT_FALSE (loadFromState (trigger, std::make_shared<State> ("3")).result);
}

TEST (TriggerTest, TriggerableFiresThroughItsVariable)
{
    auto triggerable = createOwned<Triggerable>();
    ChangeCounter counter (*triggerable);
    EXPECT_EQ (triggerable->getVariableByName ("trigger"), &triggerable->trigger);
    triggerable->trigger.trig();
    EXPECT_EQ (counter.count, 1);
}
