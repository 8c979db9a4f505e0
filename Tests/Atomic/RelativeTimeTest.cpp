#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

namespace
{
constexpr double day = 86400.0;

double parseDuration (const juce::String& text)
{
    RelativeTime time;
    EXPECT_TRUE (parse (time, text).result) << text;
    return time.get();
}
}

class RelativeTimeTest : public AtomicTestClassesFixture {};

TEST_F (RelativeTimeTest, DaysAndHours)
{
    EXPECT_EQ (parseDuration ("1 day 2 hours"), 93600.0);
}

TEST_F (RelativeTimeTest, ABareNumberIsSeconds)
{
    EXPECT_EQ (parseDuration ("2"), 2.0);
    EXPECT_EQ (parseDuration ("1h30"), 3630.0);
}

TEST_F (RelativeTimeTest, AMonthIs31Days)
{
    EXPECT_EQ (parseDuration ("1 month"), 31.0 * day);
    EXPECT_EQ (parseDuration ("2 Months"), 62.0 * day);
}

TEST_F (RelativeTimeTest, EveryUnitCounts)
{
    EXPECT_EQ (parseDuration ("1 year"), 365.0 * day);
    EXPECT_EQ (parseDuration ("2 yrs"), 730.0 * day);
    EXPECT_EQ (parseDuration ("2 weeks 3 days"), 17.0 * day);
    EXPECT_EQ (parseDuration ("3 wk"), 21.0 * day);
    EXPECT_EQ (parseDuration ("5 mins"), 300.0);
    EXPECT_EQ (parseDuration ("1 hr 1 min 1 sec"), 3661.0);
    EXPECT_EQ (parseDuration ("30 seconds"), 30.0);
    EXPECT_EQ (parseDuration ("250 ms"), 0.25);
    EXPECT_EQ (parseDuration ("2 msecs"), 0.002);
    EXPECT_EQ (parseDuration ("1,000 secs"), 1000.0);
    EXPECT_EQ (parseDuration ("3 ds"), 3.0 * day);
}

TEST_F (RelativeTimeTest, SpelledOutMillisecondsReadAsMinutes)
{
    // "seconds" is replaced first: "5 milliseconds" becomes "5millis".
    EXPECT_EQ (parseDuration ("5 milliseconds"), 300.0);
}

TEST_F (RelativeTimeTest, Infinities)
{
    EXPECT_EQ (parseDuration ("+oo"), Number::plusInfinity);
    EXPECT_EQ (parseDuration ("-oo"), Number::minusInfinity);
    EXPECT_EQ (RelativeTime (Number::plusInfinity).toString(), "+oo");
    EXPECT_EQ (RelativeTime (Number::minusInfinity).toString(), "-oo");
}

TEST_F (RelativeTimeTest, ToStringIsJuceDescription)
{
    EXPECT_EQ (RelativeTime (0.0).toString(), "0");
    EXPECT_EQ (RelativeTime (93600.0).toString(), "1 day 2 hrs");
    EXPECT_EQ (RelativeTime (90.0).toString(), "1 min 30 secs");
    EXPECT_EQ (RelativeTime (0.25).toString(), "250 ms");
    EXPECT_EQ (RelativeTime (-60.0).toString(), "-1 min");
}

TEST_F (RelativeTimeTest, DescriptionsParseBack)
{
    for (double seconds : { 93600.0, 90.0, 0.25, 14.0 * day, 3600.0 })
        EXPECT_EQ (parseDuration (RelativeTime (seconds).toString()), seconds) << seconds;
}
