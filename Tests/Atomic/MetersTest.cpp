#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

class MetersTest : public AtomicTestClassesFixture {};

TEST_F (MetersTest, UserFriendlyStringOfZero)
{
    EXPECT_EQ (Meters (0.0).toUserFriendlyString (0.0), "0 m");
}

TEST_F (MetersTest, UserFriendlyStringWithAllParts)
{
    EXPECT_EQ (Meters (1234.5).toUserFriendlyString (0.0), "1 km 234 m 50 cm");
    EXPECT_EQ (Meters (2000.0).toUserFriendlyString (0.0), "2 km");
    EXPECT_EQ (Meters (12.25).toUserFriendlyString (0.0), "12 m 25 cm");
}

TEST_F (MetersTest, UserFriendlyStringKeepsThePartsAboveThePrecision)
{
    EXPECT_EQ (Meters (1234.5).toUserFriendlyString (2000.0), "1 km 234 m 50 cm");
    EXPECT_EQ (Meters (1234.5).toUserFriendlyString (5.0), "234 m 50 cm");
    EXPECT_EQ (Meters (1234.5).toUserFriendlyString (0.5), "50 cm");
    EXPECT_EQ (Meters (1234.5).toUserFriendlyString (0.001), "");
}

TEST_F (MetersTest, Steps)
{
    Meters meters;
    EXPECT_EQ (meters.getMinimalStep(), 0.000001);
    EXPECT_EQ (meters.getSmallStep(), 0.01);
    EXPECT_EQ (meters.getNumberUnit(), "m");
    PositiveMeters positive;
    EXPECT_EQ (positive.getMinimalStep(), 0.000001);
    EXPECT_EQ (positive.getMinimumValue(), 0.0);
}

TEST_F (MetersTest, ToStringIsThatOfReal)
{
    EXPECT_EQ (Meters (12.5).toString(), "12.5");
}
