#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (FriendlyNameStringTest, FollowsTheTargetsName)
{
    NameableObject lamp;
    lamp.name.set ("Lamp");
    FriendlyNameString label;
    label.setTarget (&lamp);
    EXPECT_EQ (label.get(), "Lamp");
    EXPECT_EQ (label.getTarget(), &lamp);
    lamp.name.set ("Spot");
    EXPECT_EQ (label.get(), "Spot");
}

TEST (FriendlyNameStringTest, IsEmptyWithoutTarget)
{
    NameableObject lamp;
    lamp.name.set ("Lamp");
    FriendlyNameString label;
    label.setTarget (&lamp);
    label.setTarget (nullptr);
    EXPECT_EQ (label.get(), "");
    lamp.name.set ("Spot");
    EXPECT_EQ (label.get(), "");
}

TEST (FriendlyNameStringTest, EmptiesWhenTheTargetIsDeleted)
{
    FriendlyNameString label;
    {
        NameableObject lamp;
        lamp.name.set ("Lamp");
        label.setTarget (&lamp);
        EXPECT_EQ (label.get(), "Lamp");
    }
    EXPECT_EQ (label.getTarget(), nullptr);
    EXPECT_EQ (label.get(), "");
}

TEST (FriendlyNameStringTest, ChangingTargetsRegistersAgain)
{
    NameableObject first, second;
    first.name.set ("First");
    second.name.set ("Second");
    FriendlyNameString label;
    ChangeCounter counter (label);
    label.setTarget (&first);
    label.setTarget (&second);
    EXPECT_EQ (label.get(), "Second");
    first.name.set ("Renamed");
    EXPECT_EQ (label.get(), "Second");
    EXPECT_EQ (counter.count, 2);
}

TEST (FriendlyNameStringTest, SavesItsText)
{
    NameableObject lamp;
    lamp.name.set ("Lamp");
    FriendlyNameString label;
    label.setTarget (&lamp);
    EXPECT_EQ (label.makeState (false)->toShortString(), "\"Lamp\"");
}
