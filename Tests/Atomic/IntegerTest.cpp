#include "AtomicTestSupport.h"

using namespace tov;
using namespace tov::test;

TEST (IntegerTest, SetNotifiesOnlyOnAChange)
{
    Integer integer;
    ChangeCounter counter (integer);
    integer.set (3);
    integer.set (3);
    integer.set (4, false);
    EXPECT_EQ (integer.get(), 4);
    EXPECT_EQ (counter.count, 1);
    EXPECT_EQ (integer.getNumChanges(), 1u);
}

TEST (IntegerTest, IncrementDecrementAndReset)
{
    Integer integer (5);
    integer.increment();
    integer.increment (10);
    integer.decrement (2);
    EXPECT_EQ (integer.get(), 14);
    integer.reset();
    EXPECT_EQ (integer.get(), 0);
}

TEST (IntegerTest, SetNumberRoundsHalfAwayFromZero)
{
    Integer integer;
    integer.setNumber (2.5);
    EXPECT_EQ (integer.get(), 3);
    integer.setNumber (-2.5);
    EXPECT_EQ (integer.get(), -3);
    integer.setNumber (2.49);
    EXPECT_EQ (integer.get(), 2);
    integer.setNumber (-0.4);
    EXPECT_EQ (integer.get(), 0);
    integer.setNumber (Number::plusInfinity);
    EXPECT_EQ (integer.get(), Integer::maximumValue);
}

TEST (IntegerTest, IsUnboundedWithInfiniteLimits)
{
    Integer integer;
    EXPECT_FALSE (integer.isBounded());
    EXPECT_EQ (integer.getMinimumValue(), Number::minusInfinity);
    EXPECT_EQ (integer.getMaximumValue(), Number::plusInfinity);
    EXPECT_EQ (integer.getMinimalStep(), 1.0);
    EXPECT_EQ (integer.getSmallStep(), 1.0);
    EXPECT_EQ (integer.makeNumberValid (-7.5), -8.0);
    EXPECT_EQ (integer.getDefaultLargeValue(), 1.0);
    EXPECT_EQ (integer.getDefaultSmallValue(), 0.0);
}

TEST (IntegerTest, MarkerStepIsTheNearestOfOneTwoFive)
{
    Integer integer;
    double ratio = 0.0;
    EXPECT_EQ (integer.getMarkerStep (1.0, ratio), 1.0);
    EXPECT_EQ (ratio, 2.0);
    EXPECT_EQ (integer.getMarkerStep (4.0, ratio), 5.0);
    EXPECT_EQ (ratio, 2.0);
    EXPECT_EQ (integer.getMarkerStep (3.0, ratio), 2.0);
    EXPECT_EQ (ratio, 2.5);
    EXPECT_EQ (integer.getMarkerStep (700.0, ratio), 500.0);
    EXPECT_EQ (integer.getMarkerStep (0.001, ratio), 1.0);
    EXPECT_EQ (ratio, 2.0);
}

TEST (IntegerTest, MarkerStepNeverTakesTheLastValue)
{
    Integer integer;
    double ratio = 0.0;
    EXPECT_EQ (integer.getMarkerStep (1e12, ratio), 5e7);
    EXPECT_EQ (ratio, 2.0);
}

TEST (IntegerTest, ToStringIsDecimal)
{
    EXPECT_EQ (Integer (-42).toString(), "-42");
    EXPECT_EQ (Integer (Integer::maximumValue).toString(), "9223372036854775807");
}

TEST (IntegerTest, ParseNumberTruncatesAndSaysSo)
{
    Integer integer;
    const auto outcome = parse (integer, "3.7");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.error, "Truncated number from 3.7 to 3");
    EXPECT_EQ (integer.get(), 3);
}

TEST (IntegerTest, ParseNumberReadsInfinitiesAsTheExtremes)
{
    Integer integer;
    EXPECT_TRUE (parse (integer, "+oo").result);
    EXPECT_EQ (integer.get(), Integer::maximumValue);
    EXPECT_TRUE (parse (integer, " -OO ").result);
    EXPECT_EQ (integer.get(), Integer::minimumValue);
}

TEST (IntegerTest, ParseNumberReadsSignedDigits)
{
    Integer integer;
    const auto outcome = parse (integer, "  -123 ");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.error, "");
    EXPECT_EQ (integer.get(), -123);
}

TEST (IntegerTest, ParseNumberRejectsOtherText)
{
    Integer integer (8);
    const auto outcome = parse (integer, "12a");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Could not parse Integer value \"12a\"");
    EXPECT_EQ (integer.get(), 8);
}

TEST (IntegerTest, SavesAnIntegerAndLoadsItBack)
{
    Integer source (-17), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "-17");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.get(), -17);
    EXPECT_TRUE (target.equals (source));
}

TEST (IntegerTest, LoadAcceptsARealTruncated)
{
    Integer integer;
    EXPECT_TRUE (loadFromState (integer, std::make_shared<State> (-3.9)).result);
    EXPECT_EQ (integer.get(), -3);
    EXPECT_TRUE (loadFromState (integer, std::make_shared<State> (Number::plusInfinity)).result);
    EXPECT_EQ (integer.get(), Integer::maximumValue);
}

TEST (IntegerTest, LoadRejectsAString)
{
    Integer integer (4);
    const auto outcome = loadFromState (integer, std::make_shared<State> ("4"));
    EXPECT_FALSE (outcome.result);
    EXPECT_TRUE (outcome.messages.startsWith ("Error: Wrong type: expected integer, found string")) << outcome.messages;
    EXPECT_EQ (integer.get(), 4);
}

TEST (IntegerTest, CopiesAndComparesItsValue)
{
    Integer a (5), b (6);
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_EQ (b.get(), 5);
    EXPECT_TRUE (a.equals (b));
}

TEST (IntegerTest, CreateMakesTheValueValid)
{
    Owned<Number> number (Number::create (&PositiveInteger7Bits::staticClass, 300.4));
    ASSERT_NE (number, nullptr);
    EXPECT_EQ (number->getClass(), &PositiveInteger7Bits::staticClass);
    EXPECT_EQ (number->getNumber(), 127.0);
    Owned<Number> rounded (Number::create (&Integer::staticClass, -2.5));
    EXPECT_EQ (rounded->getNumber(), -3.0);
}
