#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/ColorShift.h>

using namespace tov;
using namespace tov::test;

TEST (ColorShiftTest, VariablesAndDefaults)
{
    Owned<ColorShift> shift (create<ColorShift>());
    ASSERT_EQ (shift->getNumVariables(), 4u);
    EXPECT_EQ (shift->getVariable (0)->getClassName(), "SignedPercentage");
    EXPECT_EQ (shift->getVariable (3)->getClassName(), "PositiveReal");
    EXPECT_EQ (shift->getMultiplier(), 1.0);
    EXPECT_EQ (shift->getCyanRed(), 0.0);
}

TEST (ColorShiftTest, OldLinkedVariableIsDroppedQuietly)
{
    ColorShift shift;
    const auto outcome = loadFromText (shift, "{cyanRed = -0.5, linked = true, multiplier = 2.0}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (shift.getCyanRed(), -0.5);
    EXPECT_EQ (shift.getMultiplier(), 2.0);
}

TEST (ColorShiftTest, UnknownVariablesAreStillWarnedOf)
{
    ColorShift shift;
    const auto outcome = loadFromText (shift, "{tint = 1.0}");
    EXPECT_TRUE (outcome.result);
    EXPECT_TRUE (outcome.messages.contains ("Unknown variable tint in ColorShift"));
}
