#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

namespace
{
constexpr double pi = juce::MathConstants<double>::pi;
}

class AngleTest : public AtomicTestClassesFixture {};

TEST_F (AngleTest, ToStringShowsTurnsAndDegrees)
{
    EXPECT_EQ (Angle (0.0).toString(), "0 deg");
    EXPECT_EQ (Angle (pi / 2).toString(), "90 deg");
    EXPECT_EQ (Angle (-pi / 2).toString(), "-90 deg");
    EXPECT_EQ (Angle (2 * pi + pi / 2).toString(), "1 turn and 90 deg");
    EXPECT_EQ (Angle (4 * pi).toString(), "2 turns");
    EXPECT_EQ (Angle (2 * pi).toString(), "1 turn");
    EXPECT_EQ (Angle (-2 * pi - pi / 4).toString(), "-1 turn and -45 deg");
}

TEST_F (AngleTest, TurnsAndRadiansAreTheParts)
{
    Angle angle;
    angle.setTurnsAndDegrees (2, 90.0);
    EXPECT_EQ (angle.getTurns(), 2);
    EXPECT_DOUBLE_EQ (angle.getRadians(), pi / 2);
    EXPECT_DOUBLE_EQ (angle.getDegrees(), 90.0);
    angle.setDegrees (45.0);
    EXPECT_EQ (angle.getTurns(), 2);
    EXPECT_NEAR (angle.get(), 4 * pi + pi / 4, 1e-12);
    angle.updateTurns (0);
    EXPECT_NEAR (angle.get(), pi / 4, 1e-12);
    angle.setTurnsAndRadians (1, 0.5);
    EXPECT_DOUBLE_EQ (angle.get(), 2 * pi + 0.5);
}

TEST_F (AngleTest, NormalizeMapsIntoMinusPiToPi)
{
    EXPECT_DOUBLE_EQ (Angle::normalize (1.5 * pi), -0.5 * pi);
    EXPECT_DOUBLE_EQ (Angle::normalize (pi), pi);
    EXPECT_DOUBLE_EQ (Angle::normalize (-pi), pi);
    EXPECT_DOUBLE_EQ (Angle::normalize (2.5 * pi), 0.5 * pi);
    EXPECT_DOUBLE_EQ (Angle::normalize (-0.25), -0.25);
}

TEST_F (AngleTest, ParseNumberReadsDegrees)
{
    Angle angle;
    EXPECT_TRUE (parse (angle, "45").result);
    EXPECT_DOUBLE_EQ (angle.get(), pi / 4);
    EXPECT_TRUE (parse (angle, "-90 deg").result);
    EXPECT_DOUBLE_EQ (angle.get(), -pi / 2);
    const auto outcome = parse (angle, "north");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Could not parse Angle value \"north\"");
}

TEST_F (AngleTest, LoadAcceptsDegreesText)
{
    Angle angle;
    EXPECT_TRUE (loadFromState (angle, std::make_shared<State> ("180 deg")).result);
    EXPECT_DOUBLE_EQ (angle.get(), pi);
    EXPECT_TRUE (loadFromState (angle, std::make_shared<State> (1.25)).result);
    EXPECT_EQ (angle.get(), 1.25);
    EXPECT_FALSE (loadFromState (angle, std::make_shared<State> ("east")).result);
}

TEST_F (AngleTest, StepsAreInDegrees)
{
    Angle angle;
    EXPECT_DOUBLE_EQ (angle.getMinimalStep(), 0.001 * pi / 180.0);
    EXPECT_DOUBLE_EQ (angle.getSmallStep(), 0.1 * pi / 180.0);
    EXPECT_DOUBLE_EQ (angle.getDefaultLargeValue(), 2 * pi);
    EXPECT_EQ (angle.getNumberUnit(), "deg");
}

TEST_F (AngleTest, BoundedAnglesShowOneNumberOfDegrees)
{
    EXPECT_EQ (PositiveAngle (pi / 2).toString(), "90");
    EXPECT_EQ (SignedAngle (-pi / 2).toString(), "-90");
    EXPECT_EQ (SingleTurnAngle (2 * pi).toString(), "360");
    EXPECT_EQ (SingleTurnAngle (pi / 3).toString(), juce::String (Angle::radiansToDegrees (pi / 3)));
}

TEST_F (AngleTest, BoundedAnglesHaveTheirRanges)
{
    PositiveAngle positive;
    SignedAngle signedAngle;
    SingleTurnAngle singleTurn;
    EXPECT_DOUBLE_EQ (positive.getMaximumValue(), pi);
    EXPECT_EQ (positive.getMinimumValue(), 0.0);
    EXPECT_DOUBLE_EQ (signedAngle.getMinimumValue(), -pi);
    EXPECT_DOUBLE_EQ (signedAngle.getMaximumValue(), pi);
    EXPECT_DOUBLE_EQ (singleTurn.getMaximumValue(), 2 * pi);
    EXPECT_DOUBLE_EQ (singleTurn.makeNumberValid (7.0), 2 * pi);
    EXPECT_TRUE (singleTurn.isBounded());
}

TEST_F (AngleTest, SavesRadians)
{
    Angle source (1.5), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "1.5");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_EQ (target.get(), 1.5);
}
