#include "AtomicTestClasses.h"
#include <cmath>

using namespace tov;
using namespace tov::test;

class RealTest : public AtomicTestClassesFixture {};

TEST_F (RealTest, SetNotifiesOnlyOnAChange)
{
    Real real;
    ChangeCounter counter (real);
    real.set (0.5);
    real.set (0.5);
    real.increment (1.0, false);
    EXPECT_EQ (real.get(), 1.5);
    EXPECT_EQ (counter.count, 1);
    real.decrement();
    EXPECT_EQ (real.get(), 0.5);
    real.reset();
    EXPECT_EQ (real.get(), 0.0);
}

TEST_F (RealTest, ToStringWritesInfinitiesAsOo)
{
    EXPECT_EQ (Real (Number::plusInfinity).toString(), "+oo");
    EXPECT_EQ (Real (Number::minusInfinity).toString(), "-oo");
    EXPECT_EQ (Real (0.5).toString(), "0.5");
    EXPECT_EQ (Real (1.0).toString(), juce::String (1.0));
    EXPECT_EQ (Real (-2.25).toString(), "-2.25");
}

TEST_F (RealTest, ParseNumberReadsDecimalsAndInfinity)
{
    Real real;
    EXPECT_TRUE (parse (real, " 2.5 ").result);
    EXPECT_EQ (real.get(), 2.5);
    EXPECT_TRUE (parse (real, "-1E3").result);
    EXPECT_EQ (real.get(), -1000.0);
    EXPECT_TRUE (parse (real, "+oo").result);
    EXPECT_EQ (real.get(), Number::plusInfinity);
}

TEST_F (RealTest, ParseNumberRejectsOtherText)
{
    Real real (1.0);
    const auto outcome = parse (real, "abc");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Could not parse Real value \"abc\"");
    EXPECT_EQ (real.get(), 1.0);
}

TEST_F (RealTest, IsUnboundedByDefault)
{
    Real real;
    EXPECT_FALSE (real.isBounded());
    EXPECT_EQ (real.getMinimalStep(), 0.0);
    EXPECT_EQ (real.getSmallStep(), 0.0);
    EXPECT_EQ (real.getDefaultLargeValue(), 1.0);
    EXPECT_EQ (real.getDefaultSmallValue(), 0.0);
    EXPECT_EQ (real.getNormalizedValue(), 0.0);
}

TEST_F (RealTest, MarkerStepIsAPowerOfTen)
{
    Real real;
    double ratio = 0.0;
    EXPECT_EQ (real.getMarkerStep (250.0, ratio), 100.0);
    EXPECT_EQ (ratio, 10.0);
    EXPECT_EQ (real.getMarkerStep (400.0, ratio), 1000.0);
    EXPECT_DOUBLE_EQ (real.getMarkerStep (0.02, ratio), 0.01);
}

TEST_F (RealTest, SignatureAttributesNarrowTheRange)
{
    auto holder = createOwned<NumberHolder>();
    auto& level = holder->level;
    EXPECT_TRUE (level.isBounded());
    EXPECT_EQ (level.getMinimumValue(), -1.0);
    EXPECT_EQ (level.getMaximumValue(), 10.0);
    EXPECT_EQ (level.getNumberUnit(), "V");
    EXPECT_EQ (level.makeNumberValid (12.0), 10.0);
    EXPECT_DOUBLE_EQ (level.getSmallStep(), 0.011);
    EXPECT_EQ (level.getDefaultLargeValue(), 10.0);
    EXPECT_EQ (level.getDefaultSmallValue(), -1.0);
    level.set (4.5);
    EXPECT_DOUBLE_EQ (level.getNormalizedValue(), 0.5);
    level.set (20.0);
    EXPECT_EQ (level.getNormalizedValue(), 1.0);
    double ratio = 0.0;
    EXPECT_EQ (level.getMarkerStep (1000.0, ratio), 10.0);
}

TEST_F (RealTest, PositiveRealRaisesNegativeValuesToZero)
{
    PositiveReal real (3.0);
    real.set (-2.0);
    EXPECT_EQ (real.get(), 0.0);
    real.setNumber (-1.0);
    EXPECT_EQ (real.get(), 0.0);
    EXPECT_EQ (real.getMinimumValue(), 0.0);
}

TEST_F (RealTest, SavesARealAndLoadsAnIntegerToo)
{
    Real source (2.5), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "2.5");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.get(), 2.5);
    EXPECT_TRUE (loadFromState (target, std::make_shared<State> (7)).result);
    EXPECT_EQ (target.get(), 7.0);
    const auto outcome = loadFromState (target, std::make_shared<State> ("7"));
    EXPECT_FALSE (outcome.result);
    EXPECT_TRUE (outcome.messages.startsWith ("Error: Wrong type: expected real, found string")) << outcome.messages;
}

TEST_F (RealTest, ComparesByBitPattern)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE (Real (nan).equals (Real (nan)));
    EXPECT_FALSE (Real (0.1).equals (Real (0.1000001)));
}

TEST_F (RealTest, ValidityAndInfinity)
{
    EXPECT_TRUE (Real::isValid (Number::plusInfinity));
    EXPECT_FALSE (Real::isValid (std::numeric_limits<double>::infinity()));
    EXPECT_FALSE (Real::isValid (std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE (Real::isNan (std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE (Real::isInfinite (Number::plusInfinity));
    EXPECT_TRUE (Real::isInfinite (-std::numeric_limits<double>::infinity()));
    EXPECT_FALSE (Real::isInfinite (1e300));
    EXPECT_TRUE (Real (2.0).isValid());
}

TEST_F (RealTest, RoundingAndInterpolation)
{
    EXPECT_EQ (Real::toNearestInteger (2.5), 3);
    EXPECT_EQ (Real::toNearestInteger (-2.5), -3);
    EXPECT_EQ (Real::toNearestInteger (2.4999), 2);
    EXPECT_EQ (Real::toNearestInteger64 (1e15 + 0.5), (int64_t) 1000000000000001);
    EXPECT_EQ (Real::toNearestInteger (1e12), std::numeric_limits<int>::max());
    EXPECT_EQ (Real::lerp (2.0, 4.0, 0.25), 2.5);
}

TEST_F (RealTest, HalfBitsFollowIeeeBinary16)
{
    EXPECT_EQ (Real::halfBitsToDouble (0x3c00), 1.0);
    EXPECT_EQ (Real::halfBitsToDouble (0xc000), -2.0);
    EXPECT_EQ (Real::halfBitsToDouble (0x7bff), 65504.0);
    EXPECT_EQ (Real::halfBitsToDouble (0x3555), 0.333251953125);
    EXPECT_EQ (Real::halfBitsToDouble (0x0001), std::ldexp (1.0, -24));
    EXPECT_EQ (Real::halfBitsToDouble (0x03ff), std::ldexp (1023.0, -24));
    EXPECT_EQ (Real::halfBitsToDouble (0x0400), std::ldexp (1.0, -14));
    EXPECT_EQ (Real::halfBitsToDouble (0x7c00), std::numeric_limits<double>::infinity());
    EXPECT_EQ (Real::halfBitsToDouble (0xfc00), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE (std::isnan (Real::halfBitsToDouble (0x7e00)));
    EXPECT_TRUE (std::signbit (Real::halfBitsToDouble (0x8000)));
    EXPECT_EQ (Real::halfBitsToFloat (0x3800), 0.5f);
    EXPECT_EQ (Real::halfBitsToFloat (0x7bff), 65504.0f);
}
