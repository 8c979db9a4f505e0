#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/Rational.h>
#include <cmath>
#include <random>

using namespace tov;
using namespace tov::test;

namespace
{
juce::String real (double value, double tolerance)
{
    Rational rational;
    rational.setReal (value, tolerance);
    return rational.toString();
}
} // namespace

TEST (RationalTest, IsAReflectedClassOfTwoIntegers)
{
    Rational rational;
    EXPECT_EQ (rational.getClassName(), "Rational");
    ASSERT_EQ (rational.getNumVariables(), 2u);
    EXPECT_EQ (rational.getVariable (0)->getClassName(), "PositiveInteger");
    EXPECT_EQ (rational.getVariable (1)->getClassName(), "StrictlyPositiveInteger");
    EXPECT_EQ (rational.toString(), "0/1");
}

TEST (RationalTest, NearWholeNumberGivesTheWholeNumber)
{
    EXPECT_EQ (real (3.0000001, 0.001), "3/1");
    EXPECT_EQ (real (1.0, 0.001), "1/1");
    EXPECT_EQ (real (24.0, 1e-12), "24/1");
}

TEST (RationalTest, HalvesAreFound)
{
    EXPECT_EQ (real (0.5, 0.001), "1/2");
    EXPECT_EQ (real (1.5, 1e-6), "3/2");
}

TEST (RationalTest, AboveOneTheSearchRunsOnTheInverse)
{
    // 30000/1001 needs a numerator beyond 1000: the search on 1001/30000 stops at 33/989.
    EXPECT_EQ (real (30000.0 / 1001.0, 1e-6), "989/33");
    EXPECT_EQ (real (2.5, 0.001), "5/2");
    EXPECT_EQ (real (4.0 / 3.0, 0.001), "4/3");
}

TEST (RationalTest, WithinTheToleranceOfAMediantTheMediantIsTaken)
{
    EXPECT_EQ (real (0.1 + 1e-10, 0.001), "1/10");
    EXPECT_EQ (real (355.0 / 1000.0, 0.001), "71/200");
}

TEST (RationalTest, SmallDenominatorsWinOverCloseOnes)
{
    // pi - 3 is searched below 1000: 16/113 is within 1e-5 of it, well inside the limit.
    EXPECT_EQ (real (M_PI - 3.0, 0.001), "16/113");
    // 1/1001 is beyond the limit: the search stops when the upper bound's denominator passes 1000.
    EXPECT_EQ (real (1.0 / 1001.0, 0.001), "0/1");
}

TEST (RationalTest, ZeroAndNegativeValuesGiveZero)
{
    EXPECT_EQ (real (0.0, 0.001), "0/1");
    EXPECT_EQ (real (-0.25, 0.001), "0/1");
}

TEST (RationalTest, NextToOneTheUpperBoundIsTaken)
{
    // The lower bounds n/(n+1) climb past denominator 1000 before the upper bound 1/1 moves.
    EXPECT_EQ (real (0.99999, 0.001), "1/1");
}

TEST (RationalTest, SimplifiedRational)
{
    EXPECT_EQ (Rational (6, 4).getSimplifiedRational().toString(), "3/2");
    EXPECT_EQ (Rational (0, 7).getSimplifiedRational().toString(), "0/1");
    EXPECT_EQ (Rational (5, 0).getSimplifiedRational().toString(), "0/1");
    EXPECT_EQ (Rational::getGCD (12, 18), 6);

    Rational rational (10, 25);
    rational.simplify();
    EXPECT_EQ (rational.toString(), "2/5");
    rational.simplifyAndSet (7, 0);
    EXPECT_EQ (rational.toString(), "0/1");
    rational.simplifyAndSet (9, 12);
    EXPECT_EQ (rational.toString(), "3/4");
    EXPECT_EQ (rational.get(), 0.75);
}

TEST (RationalTest, RealStateLoadsThroughSetReal)
{
    Rational rational;
    EXPECT_TRUE (loadFromText (rational, "0.75").result);
    EXPECT_EQ (rational.toString(), "3/4");
    EXPECT_TRUE (loadFromText (rational, "25.0").result);
    EXPECT_EQ (rational.toString(), "25/1");
}

TEST (RationalTest, OtherStatesLoadAsVariables)
{
    Rational rational;
    const auto outcome = loadFromText (rational, "{p = 30000, q = 1001}");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "");
    EXPECT_EQ (rational.toString(), "30000/1001");

    Rational saved (24000, 1001), loaded;
    EXPECT_EQ (saved.makeState (false)->toShortString(), "{p = 24000, q = 1001}");
    EXPECT_TRUE (saveAndLoad (saved, loaded).result);
    EXPECT_TRUE (loaded.equals (saved));
}

//==============================================================================
/* setReal against a brute force of the same rule, on 10,000 random reals.

   The rule: below 1 the result is the greatest fraction p/q <= value with q <= 1000, which is
   where the Stern-Brocot search stands when its upper bound's denominator passes 1000. Above
   1 the same on 1/value, turned over. The brute force tries every denominator instead of
   walking the tree.

   Where the two differ, the library is right in its own terms, and the test says which:
   - the lower bound's denominator passed 1000 first (about half of all values: the search
     climbs on the side the value is nearer to). The search then ends on the upper bound,
     which is the least fraction >= value with q <= 1000, so that the result never has a
     denominator beyond the limit;
   - the search met a mediant within 1e-9 of the value: it takes the mediant when its
     denominator is at most 1000 (the value is that fraction, give or take rounding), else the
     bound of smaller denominator, which may be the upper one. */
namespace
{
struct Fraction
{
    int64_t p = 0, q = 1;
    double get() const { return (double) p / (double) q; }
};

Fraction greatestBelow (double x)
{
    Fraction best { 0, 1 };
    for (int64_t q = 1; q <= 1000; ++q)
    {
        const int64_t p = (int64_t) std::floor (x * (double) q);
        if ((double) p / (double) q > best.get())
            best = { p, q };
    }
    return best;
}

Fraction leastAbove (double x)
{
    Fraction best { 1, 1 };
    for (int64_t q = 1; q <= 1000; ++q)
    {
        const int64_t p = (int64_t) std::ceil (x * (double) q);
        if ((double) p / (double) q < best.get())
            best = { p, q };
    }
    return best;
}

/** The gap between a value in [0, 1] and the nearest fraction of denominator at most 2000:
    below 1e-9 the search may stop on a mediant. */
bool isWithinMediantTolerance (double x)
{
    for (int64_t q = 1; q <= 2000; ++q)
        if (std::abs (x - std::round (x * (double) q) / (double) q) < 1e-9)
            return true;
    return false;
}
} // namespace

TEST (RationalTest, SetRealMatchesABruteForceOfTheSameRule)
{
    std::mt19937_64 engine (20260307);
    std::uniform_real_distribution<double> belowOne (0.0, 1.0), aboveOne (1.0, 60.0);
    const double tolerance = 1e-4;
    int agreements = 0, mediantCases = 0, upperBoundCases = 0, wholeNumbers = 0;

    for (int i = 0; i < 10000; ++i)
    {
        const double value = (i % 2 == 0) ? belowOne (engine) : aboveOne (engine);
        int64_t p = 0, q = 0;
        Rational::findRational (value, tolerance, p, q);

        Fraction expected;
        if (value >= 1.0 && std::abs (value - std::round (value)) < tolerance)
        {
            expected = { (int64_t) std::round (value), 1 };
            ++wholeNumbers;
        }
        else
        {
            const bool inverted = value > 1.0;
            const Fraction below = greatestBelow (inverted ? 1.0 / value : value);
            expected = inverted ? Fraction { below.q, below.p } : below;
        }

        if (p == expected.p && q == expected.q)
        {
            ++agreements;
            continue;
        }

        const bool inverted = value > 1.0;
        const double x = inverted ? 1.0 / value : value;
        const Fraction found = inverted ? Fraction { q, p } : Fraction { p, q };
        const Fraction above = leastAbove (x);
        if (isWithinMediantTolerance (x))
        {
            ++mediantCases;
            EXPECT_LE (found.q, 1000) << value;
        }
        else
        {
            ++upperBoundCases;
            EXPECT_EQ (found.p, above.p) << value;
            EXPECT_EQ (found.q, above.q) << value;
        }
    }

    EXPECT_GT (agreements, 4000);
    EXPECT_GT (upperBoundCases, 4000);
    EXPECT_EQ (agreements + mediantCases + upperBoundCases, 10000);
    EXPECT_GT (wholeNumbers, 0);
}
