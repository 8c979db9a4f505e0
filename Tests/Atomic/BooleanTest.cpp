#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (BooleanTest, SetAndToggleNotifyOnChanges)
{
    Boolean boolean;
    ChangeCounter counter (boolean);
    boolean.set (false);
    boolean.toggle();
    boolean.set (true);
    EXPECT_TRUE (boolean.get());
    boolean.toggle (false);
    EXPECT_FALSE (boolean.get());
    EXPECT_EQ (counter.count, 1);
}

TEST (BooleanTest, ToStringIsTrueOrFalse)
{
    EXPECT_EQ (Boolean (true).toString(), "true");
    EXPECT_EQ (Boolean (false).toString(), "false");
}

TEST (BooleanTest, SavesABooleanAndLoadsItBack)
{
    Boolean source (true), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "true");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_TRUE (target.get());
    EXPECT_TRUE (target.equals (source));
}

TEST (BooleanTest, LoadRejectsOtherTypes)
{
    Boolean boolean (true);
    const auto outcome = loadFromState (boolean, std::make_shared<State> (1));
    EXPECT_FALSE (outcome.result);
    EXPECT_TRUE (outcome.messages.startsWith ("Error: Wrong type: expected boolean, found integer")) << outcome.messages;
    EXPECT_TRUE (boolean.get());
}

TEST (BooleanTest, CopiesItsValue)
{
    Boolean a (true), b;
    a.copyTo (b);
    EXPECT_TRUE (b.get());
}
