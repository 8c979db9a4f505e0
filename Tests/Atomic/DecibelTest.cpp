#include "AtomicTestClasses.h"
#include <cmath>

using namespace tov;
using namespace tov::test;

class DecibelTest : public AtomicTestClassesFixture {};

TEST_F (DecibelTest, UnityGainIsZeroDecibels)
{
    EXPECT_EQ (Decibel (1.0).toString(), "0.00");
}

TEST_F (DecibelTest, ToStringHasTwoDecimals)
{
    EXPECT_EQ (Decibel (0.5).toString(), "-6.02");
    EXPECT_EQ (Decibel (2.0).toString(), "6.02");
    EXPECT_EQ (Decibel (10.0).toString(), "20.00");
}

TEST_F (DecibelTest, ToStringIsFlooredAtMinus50)
{
    EXPECT_EQ (Decibel (0.0).toString(), "-50.00");
    EXPECT_EQ (Decibel (0.0001).toString(), "-50.00");
    Decibel negative;
    negative.Real::set (-1.0);
    EXPECT_EQ (negative.toString(), "-50.00");
}

TEST_F (DecibelTest, ParseOfMinus50IsSilence)
{
    Decibel gain (1.0);
    EXPECT_TRUE (parse (gain, "-50").result);
    EXPECT_EQ (gain.get(), 0.0);
    EXPECT_TRUE (parse (gain, "-80 dB").result);
    EXPECT_EQ (gain.get(), 0.0);
}

TEST_F (DecibelTest, ParseAboveMinus50IsAGain)
{
    Decibel gain;
    EXPECT_TRUE (parse (gain, "-49.9").result);
    EXPECT_DOUBLE_EQ (gain.get(), std::pow (10.0, -49.9 * 0.05));
    EXPECT_GT (gain.get(), 0.0);
    EXPECT_LT (gain.get(), 0.004);
    EXPECT_TRUE (parse (gain, "6 dB").result);
    EXPECT_DOUBLE_EQ (gain.get(), std::pow (10.0, 0.3));
    EXPECT_TRUE (parse (gain, "0").result);
    EXPECT_EQ (gain.get(), 1.0);
}

TEST_F (DecibelTest, ParseRejectsWords)
{
    Decibel gain (1.0);
    const auto outcome = parse (gain, "loud");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Could not parse Decibel value \"loud\"");
    EXPECT_EQ (gain.get(), 1.0);
}
