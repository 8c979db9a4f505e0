#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

namespace
{
constexpr double pi = juce::MathConstants<double>::pi;

StringWithChoices makeChoices()
{
    StringWithChoices choices;
    choices.setChoices (std::vector<juce::String> { "a", "b", "c" });
    return choices;
}

juce::String convertToChoice (const Number& number)
{
    auto choices = makeChoices();
    number.convertToObject (choices);
    return choices.get();
}
}

class NumberTest : public AtomicTestClassesFixture {};

TEST_F (NumberTest, UnboundedNumbersConvertToBooleanByNotZero)
{
    Boolean boolean (true);
    Integer (0).convertToObject (boolean);
    EXPECT_FALSE (boolean.get());
    Integer (-3).convertToObject (boolean);
    EXPECT_TRUE (boolean.get());
}

TEST_F (NumberTest, BoundedNumbersConvertToBooleanByTheirHalf)
{
    Boolean boolean;
    Percentage (0.5).convertToObject (boolean);
    EXPECT_TRUE (boolean.get());
    Percentage (0.49).convertToObject (boolean);
    EXPECT_FALSE (boolean.get());
}

TEST_F (NumberTest, UnboundedNumbersPickAChoiceByValue)
{
    EXPECT_EQ (convertToChoice (Integer (1)), "b");
    EXPECT_EQ (convertToChoice (Integer (7)), "c");
    EXPECT_EQ (convertToChoice (Real (1.9)), "b");
    EXPECT_EQ (convertToChoice (Integer (-2)), "a");
}

TEST_F (NumberTest, BoundedNumbersPickAChoiceByPlace)
{
    EXPECT_EQ (convertToChoice (Percentage (0.5)), "b");
    EXPECT_EQ (convertToChoice (Percentage (0.2)), "a");
    EXPECT_EQ (convertToChoice (Percentage (1.0)), "c");
}

TEST_F (NumberTest, NoChoicesResetTheTarget)
{
    StringWithChoices choices;
    choices.set ("kept?");
    Integer (1).convertToObject (choices);
    EXPECT_EQ (choices.get(), "");
}

TEST_F (NumberTest, NumbersPickAnEnumerationElementByIndex)
{
    Interpolation interpolation;
    Integer (2).convertToObject (interpolation);
    EXPECT_EQ (interpolation.get(), Interpolation::cubicSpline);
    Percentage (0.4).convertToObject (interpolation);
    EXPECT_EQ (interpolation.get(), Interpolation::linear);
}

TEST_F (NumberTest, AnEnumerationWithoutElementsIsLeftAlone)
{
    Enumeration bare (9);
    Integer (2).convertToObject (bare);
    EXPECT_EQ (bare.get(), 9);
}

TEST_F (NumberTest, ABoundedNumberBecomesAnAngleAroundZero)
{
    Angle angle;
    Percentage (0.75).convertToObject (angle);
    EXPECT_DOUBLE_EQ (angle.get(), pi / 2);
    Percentage (0.0).convertToObject (angle);
    EXPECT_DOUBLE_EQ (angle.get(), -pi);
}

TEST_F (NumberTest, BoundedNumbersMapBetweenRanges)
{
    SignedPercentage balance (0.7);
    Percentage (0.5).convertToObject (balance);
    EXPECT_EQ (balance.get(), 0.0);
    PositiveAngle aperture;
    Percentage (0.75).convertToObject (aperture);
    EXPECT_DOUBLE_EQ (aperture.get(), 0.75 * pi);
}

TEST_F (NumberTest, OtherwiseTheValueIsMadeValid)
{
    Real real;
    Integer (5).convertToObject (real);
    EXPECT_EQ (real.get(), 5.0);
    PositiveInteger7Bits note;
    Real (300.0).convertToObject (note);
    EXPECT_EQ (note.get(), 127);
    Integer integer;
    Real (2.5).convertToObject (integer);
    EXPECT_EQ (integer.get(), 3);
    Percentage copy;
    Percentage (0.3).convertToObject (copy);
    EXPECT_EQ (copy.get(), 0.3);
}

TEST_F (NumberTest, IsConvertibleToBooleansChoicesEnumerationsAndNumbers)
{
    Integer integer;
    EXPECT_TRUE (integer.isConvertibleTo (Boolean()));
    EXPECT_TRUE (integer.isConvertibleTo (StringWithChoices()));
    EXPECT_TRUE (integer.isConvertibleTo (Interpolation()));
    EXPECT_TRUE (integer.isConvertibleTo (Angle()));
    EXPECT_TRUE (integer.isConvertibleTo (Integer()));
    EXPECT_TRUE (integer.isConvertibleTo (String()));
    EXPECT_FALSE (integer.isConvertibleTo (Trigger()));
    EXPECT_FALSE (integer.isConvertibleTo (Uuid()));
}

TEST_F (NumberTest, BooleansAndEnumerationsConvertToNumbers)
{
    Integer integer;
    Boolean (true).convertToObject (integer);
    EXPECT_EQ (integer.get(), 1);
    Real real (4.0);
    Boolean (false).convertToObject (real);
    EXPECT_EQ (real.get(), 0.0);
    Interpolation (Interpolation::cubicSpline).convertToObject (integer);
    EXPECT_EQ (integer.get(), 5);
    Interpolation (Interpolation::linear).convertToObject (real);
    EXPECT_EQ (real.get(), 1.0);
    EXPECT_TRUE (Boolean().isConvertibleTo (Real()));
    EXPECT_TRUE (Interpolation().isConvertibleTo (Integer()));
}

TEST_F (NumberTest, CreateNeedsANumberClass)
{
    EXPECT_EQ (Number::create (&String::staticClass, 1.0), nullptr);
    EXPECT_EQ (Number::create (&Number::staticClass, 1.0), nullptr);
    EXPECT_EQ (Number::create (nullptr, 1.0), nullptr);
}

TEST_F (NumberTest, DefaultParseLoadsAStateText)
{
    Integer integer;
    juce::String error;
    EXPECT_TRUE (integer.Number::parseNumber ("12", error));
    EXPECT_EQ (integer.get(), 12);
    EXPECT_FALSE (integer.Number::parseNumber ("\"twelve\"", error));
    EXPECT_TRUE (error.contains ("Wrong type: expected integer, found string")) << error;
}

TEST_F (NumberTest, ANumberIsItsOwnNumberVariable)
{
    Real real;
    EXPECT_EQ (real.getNumNumberVariables(), 1u);
    EXPECT_EQ (real.getNumberVariable (0), &real);
    EXPECT_EQ (real.getNumberVariable (1), nullptr);
}

TEST_F (NumberTest, SignatureLimitsApplyToIntegers)
{
    auto holder = createOwned<NumberHolder>();
    EXPECT_TRUE (holder->limited.isBounded());
    EXPECT_EQ (holder->limited.getMinimumValue(), -5.0);
    EXPECT_EQ (holder->limited.getMaximumValue(), 5.0);
    holder->limited.makeValidAndSet (9.0);
    EXPECT_EQ (holder->limited.get(), 5);
    EXPECT_DOUBLE_EQ (holder->limited.getNormalizedValue(), 1.0);
}

TEST_F (NumberTest, DefaultLargeAndSmallValues)
{
    Percentage percentage;
    EXPECT_EQ (percentage.getDefaultLargeValue(), 1.0);
    EXPECT_EQ (percentage.getDefaultSmallValue(), 0.0);
    SignedPercentage balance;
    EXPECT_EQ (balance.getDefaultSmallValue(), -1.0);
    PositiveInteger7Bits note;
    EXPECT_EQ (note.getDefaultLargeValue(), 127.0);
}
