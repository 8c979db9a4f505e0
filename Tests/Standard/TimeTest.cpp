#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/Time.h>

using namespace tov;
using namespace tov::test;

namespace
{
// Tests run with TZ=UTC, so local time is UTC.
juce::Time march7th2026 (int milliseconds = 0)
{
    return juce::Time (2026, 2, 7, 9, 5, 2, milliseconds, true);
}
} // namespace

TEST (TimeTest, ZeroTimeIsNotAvailable)
{
    Time time;
    EXPECT_EQ (time.toString(), "N/A");
    EXPECT_EQ (time.toStringWithoutDay(), "N/A");
}

TEST (TimeTest, TextsOfAnInstant)
{
    Time time (march7th2026());
    EXPECT_EQ (time.toString(), "2026/03/07 09:05:02");
    EXPECT_EQ (time.toStringWithoutDay(), "09:05:02");
    EXPECT_EQ (time.toFrenchStyleString(), "07/03/2026");
    EXPECT_EQ (time.toFileNameString(), "2026-3-7_9-5-2");
}

TEST (TimeTest, FrenchStyleAndFileNameOfAZeroTimeShowTheEpoch)
{
    Time time;
    EXPECT_EQ (time.toFrenchStyleString(), "01/01/1970");
    EXPECT_EQ (time.toFileNameString(), "1970-1-1_0-0-0");
}

TEST (TimeTest, StateFormIsTheMilliseconds)
{
    Time time (march7th2026 (250));
    EXPECT_EQ (time.makeState (false)->toShortString(), juce::String (march7th2026 (250).toMilliseconds()));

    Time loaded;
    EXPECT_TRUE (saveAndLoad (time, loaded).result);
    EXPECT_EQ (loaded.get(), march7th2026 (250));
}

TEST (TimeTest, LoadsFromAnIntegerText)
{
    Time time;
    const auto outcome = loadFromText (time, "1000");
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (time.get().toMilliseconds(), 1000);
}

TEST (TimeTest, SettingTheSameValueNotifiesNobody)
{
    Time time (march7th2026());
    ChangeCounter counter (time);
    time.set (march7th2026());
    EXPECT_EQ (counter.count, 0);
    time.set (march7th2026 (1));
    EXPECT_EQ (counter.count, 1);
    time.set (march7th2026 (2), false);
    EXPECT_EQ (counter.count, 1);
    EXPECT_EQ (time.get(), march7th2026 (2));
}

TEST (TimeTest, ResetGivesTheZeroTime)
{
    Time time (march7th2026());
    time.reset();
    EXPECT_EQ (time.get().toMilliseconds(), 0);
}

TEST (TimeTest, CurrentTimeIsNow)
{
    const auto before = juce::Time::getCurrentTime();
    const auto now = Time::getCurrentTime().get();
    EXPECT_GE (now, before);
    EXPECT_LE (now, juce::Time::getCurrentTime());
}
