#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

class SecondsTest : public AtomicTestClassesFixture {};

TEST_F (SecondsTest, ParseReadsATimeCodeAtFiftyFrames)
{
    Seconds seconds;
    EXPECT_EQ (seconds.getTimeBase(), 50.0);
    EXPECT_TRUE (parse (seconds, "1:02:03:25").result);
    EXPECT_EQ (seconds.get(), 3723.5);
}

TEST_F (SecondsTest, ToStringOfNinetySeconds)
{
    EXPECT_EQ (Seconds (90.0).toString(), "0:01:30:00");
}

TEST_F (SecondsTest, ToStringShowsFramesAtTheTimeBase)
{
    EXPECT_EQ (Seconds (3723.5).toString(), "1:02:03:25");
    EXPECT_EQ (Seconds (0.0).toString(), "0:00:00:00");
    EXPECT_EQ (Seconds (36000.02).toString(), "10:00:00:01");
}

TEST_F (SecondsTest, ParseReadsFromTheEnd)
{
    Seconds seconds;
    EXPECT_TRUE (parse (seconds, "03:25").result);
    EXPECT_EQ (seconds.get(), 3.5);
    EXPECT_TRUE (parse (seconds, "2:00:10").result);
    EXPECT_DOUBLE_EQ (seconds.get(), 120.2);
    EXPECT_TRUE (parse (seconds, "9:1:02:03:25").result);
    EXPECT_EQ (seconds.get(), 3723.5);
    EXPECT_TRUE (parse (seconds, "1.02.03.25").result);
    EXPECT_EQ (seconds.get(), 3723.5);
}

TEST_F (SecondsTest, ShortStringsShowAsManyFieldsAsAsked)
{
    EXPECT_EQ (Seconds::toShortString (5.5, 50.0, 0), "05:25");
    EXPECT_EQ (Seconds::toShortString (5.5, 50.0, 1), "00:05:25");
    EXPECT_EQ (Seconds::toShortString (5.5, 50.0, 2), "0:00:05:25");
    EXPECT_EQ (Seconds::toShortString (65.0, 50.0, 0), "01:05:00");
    EXPECT_EQ (Seconds::toShortString (7265.0, 50.0, 0), "2:01:05:00");
}

TEST_F (SecondsTest, CountsOfTheParts)
{
    EXPECT_EQ (Seconds::getHoursCount (7384.5), 2);
    EXPECT_EQ (Seconds::getMinutesCount (7384.5), 3);
    EXPECT_EQ (Seconds::getSecondsCount (7384.5), 4);
    EXPECT_EQ (Seconds::getFramesCount (7384.5, 30.0), 15);
    EXPECT_EQ (Seconds::getFramesCount (7384.5, 0.0), 0);
}

TEST_F (SecondsTest, AProviderAboveGivesTheTimeBase)
{
    auto timeline = createOwned<Timeline>();
    auto& position = timeline->position;
    EXPECT_EQ (position.getTimeBase(), 25.0);
    EXPECT_EQ (position.getMinimalStep(), 0.04);
    EXPECT_TRUE (parse (position, "00:01:12").result);
    EXPECT_DOUBLE_EQ (position.get(), 1.48);
    EXPECT_EQ (position.toString(), "0:00:01:12");
    timeline->timeBase = 0.0;
    EXPECT_EQ (position.getTimeBase(), 50.0);
}

TEST_F (SecondsTest, InfinityIsEndless)
{
    Seconds seconds (Number::plusInfinity);
    EXPECT_TRUE (seconds.isEndless());
    EXPECT_EQ (seconds.toString(), "+oo");
    seconds.set (3.0);
    EXPECT_TRUE (parse (seconds, "+oo").result);
    EXPECT_EQ (seconds.get(), Number::plusInfinity);
}

TEST_F (SecondsTest, ANegativeValueIsInvalid)
{
    Seconds seconds (5.0);
    EXPECT_TRUE (seconds.isValid());
    seconds.set (Seconds::invalid());
    EXPECT_EQ (seconds.get(), -1.0);
    EXPECT_FALSE (seconds.isValid());
}

TEST_F (SecondsTest, ValuesBeyondAYearAreDates)
{
    // 4 March 2021, 05:06:07 UTC, and half a second.
    EXPECT_EQ (Seconds (1614834367.5).toString(), "4 Mar 2021 5:06:07:25");
    EXPECT_EQ (Seconds (8784.0 * 3600.0).toString(), "8784:00:00:00");
}

TEST_F (SecondsTest, LoadAcceptsTimeVariableAndInfinityText)
{
    Seconds seconds;
    auto state = std::make_shared<State>();
    state->addVariable ("time", std::make_shared<State> (12.5));
    EXPECT_TRUE (loadFromState (seconds, state).result);
    EXPECT_EQ (seconds.get(), 12.5);
    EXPECT_TRUE (loadFromState (seconds, std::make_shared<State> ("+oo")).result);
    EXPECT_EQ (seconds.get(), Number::plusInfinity);
    EXPECT_TRUE (loadFromState (seconds, std::make_shared<State> (4)).result);
    EXPECT_EQ (seconds.get(), 4.0);
}

TEST_F (SecondsTest, StepsAndUnit)
{
    Seconds seconds;
    EXPECT_EQ (seconds.getMinimalStep(), 0.02);
    EXPECT_EQ (seconds.getSmallStep(), 1.0);
    EXPECT_EQ (seconds.getNumberUnit(), "s");
}
