#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

class PercentageTest : public AtomicTestClassesFixture {};

TEST_F (PercentageTest, ToStringHasThreeDecimals)
{
    EXPECT_EQ (UnboundedPercentage (0.5).toString(), "50.000");
    EXPECT_EQ (Percentage (0.12345).toString(), "12.345");
    EXPECT_EQ (SignedPercentage (-1.0).toString(), "-100.000");
}

TEST_F (PercentageTest, ParseTakesTextWithOrWithoutPercentSign)
{
    for (auto text : { "50%", "50 %", "50" })
    {
        Percentage percentage;
        EXPECT_TRUE (parse (percentage, text).result) << text;
        EXPECT_EQ (percentage.get(), 0.5) << text;
    }
}

TEST_F (PercentageTest, UnboundedPercentageKeepsAnyValue)
{
    UnboundedPercentage percentage;
    EXPECT_FALSE (percentage.isBounded());
    EXPECT_EQ (percentage.getMinimumValue(), 0.0);
    EXPECT_EQ (percentage.getMaximumValue(), 1.0);
    EXPECT_EQ (percentage.makeNumberValid (2.5), 2.5);
    EXPECT_TRUE (parse (percentage, "150").result);
    EXPECT_EQ (percentage.get(), 1.5);
    EXPECT_EQ (percentage.getSmallStep(), 0.001);
    EXPECT_EQ (percentage.getDefaultLargeValue(), 1.0);
    EXPECT_EQ (percentage.getNumberUnit(), "%");
}

TEST_F (PercentageTest, PercentageIsHeldBetweenZeroAndHundred)
{
    Percentage percentage;
    EXPECT_TRUE (percentage.isBounded());
    EXPECT_TRUE (parse (percentage, "150").result);
    EXPECT_EQ (percentage.get(), 1.0);
    EXPECT_TRUE (parse (percentage, "-20 %").result);
    EXPECT_EQ (percentage.get(), 0.0);
    EXPECT_EQ (percentage.getSmallStep(), 0.001);
}

TEST_F (PercentageTest, SignedPercentageGoesDownToMinusHundred)
{
    SignedPercentage percentage;
    EXPECT_TRUE (percentage.isBounded());
    EXPECT_EQ (percentage.getMinimumValue(), -1.0);
    EXPECT_TRUE (parse (percentage, "-150%").result);
    EXPECT_EQ (percentage.get(), -1.0);
    EXPECT_TRUE (parse (percentage, "-25").result);
    EXPECT_EQ (percentage.get(), -0.25);
}
