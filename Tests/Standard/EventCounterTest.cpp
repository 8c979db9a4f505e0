#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/EventCounter.h>

using namespace tov;
using namespace tov::test;

TEST (EventCounterTest, VariablesInOrderWithTheirHints)
{
    EventCounter counter;
    ASSERT_EQ (counter.getNumVariables(), 4u);
    const char* names[] = { "count", "countAtReset", "countSinceReset", "reset" };
    const char* classes[] = { "PositiveInteger", "PositiveInteger", "PositiveInteger", "Trigger" };
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ (counter.getVariableSignature (i)->getName(), names[i]);
        EXPECT_EQ (counter.getVariable (i)->getClassName(), classes[i]);
    }
    EXPECT_NE (counter.getVariableSignature ((size_t) 0)->getAttribute ("advanced"), nullptr);
    EXPECT_NE (counter.getVariableSignature ((size_t) 1)->getAttribute ("advanced"), nullptr);
    EXPECT_EQ (counter.getVariableSignature ((size_t) 2)->getAttribute ("advanced"), nullptr);
    EXPECT_NE (counter.getVariableSignature ((size_t) 2)->getAttribute ("displayInRedIfDifferentFromDefaultValue"), nullptr);
}

// Counters made by their class: the members know their parent, and the callbacks run.
TEST (EventCounterTest, CountSinceResetFollowsTheCount)
{
    auto owned = createOwned<EventCounter>();
    auto& counter = *owned;
    counter.increment();
    counter.increment();
    EXPECT_EQ (counter.get(), 2);
    EXPECT_EQ (counter.getCountSinceReset(), 2);
    counter.resetNow();
    EXPECT_EQ (counter.getCountAtReset(), 2);
    EXPECT_EQ (counter.getCountSinceReset(), 0);
    counter.set (5);
    EXPECT_EQ (counter.getCountSinceReset(), 3);
}

TEST (EventCounterTest, CountBelowTheCountAtResetShowsZero)
{
    auto owned = createOwned<EventCounter>();
    auto& counter = *owned;
    counter.set (10);
    counter.resetNow();
    counter.set (4);
    EXPECT_EQ (counter.getCountAtReset(), 4);
    EXPECT_EQ (counter.getCountSinceReset(), 0);
    counter.set (6);
    EXPECT_EQ (counter.getCountSinceReset(), 2);
}

TEST (EventCounterTest, FiringTheResetTriggerResets)
{
    auto owned = createOwned<EventCounter>();
    auto& counter = *owned;
    counter.set (8);
    counter.getReset().trig();
    EXPECT_EQ (counter.getCountAtReset(), 8);
    EXPECT_EQ (counter.getCountSinceReset(), 0);
}

TEST (EventCounterTest, WithoutNotificationTheCountsStillFollow)
{
    EventCounter counter;
    ChangeCounter changes (counter);
    counter.set (3, false);
    EXPECT_EQ (counter.getCountSinceReset(), 3);
    EXPECT_EQ (changes.count, 0);
}

TEST (EventCounterTest, LoadedCountsStayAsSaved)
{
    EventCounter counter;
    const auto outcome = loadFromText (counter, "{count = 10, countAtReset = 4, countSinceReset = 6}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (counter.get(), 10);
    EXPECT_EQ (counter.getCountAtReset(), 4);
    EXPECT_EQ (counter.getCountSinceReset(), 6);
}
