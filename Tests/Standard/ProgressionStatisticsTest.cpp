#include "TaskTestSupport.h"
#include <Tov/Standard/ToStringExecutionContext.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** Statistics on ManualClock, and a status text whose changes they count. */
class ProgressionStatisticsTest : public TaskFixture
{
protected:
    ProgressionStatistics statistics;
    String status;

    void SetUp() override
    {
        TaskFixture::SetUp();
        statistics.setMillisecondClock (&ManualClock::get);
    }

    /** A run of that many status changes over that many milliseconds; finish's answer. */
    bool run (int numChanges, double milliseconds)
    {
        statistics.start (status);
        for (int i = 0; i < numChanges; ++i)
            status.set ("step " + juce::String (i + 1 + (int) statistics.getNumRuns().get() * 1000));
        ManualClock::now += milliseconds;
        return statistics.finish();
    }
};
} // namespace

TEST_F (ProgressionStatisticsTest, StartsEmptyWithItsVariablesInOrder)
{
    EXPECT_TRUE (statistics.isEmpty());
    EXPECT_EQ (statistics.getNumRuns().get(), 0);
    juce::StringArray names;
    for (size_t i = 0; i < statistics.getNumVariables(); ++i)
        names.add (statistics.getVariableSignature (i)->getName());
    EXPECT_EQ (names, juce::StringArray ({ "numRuns", "numStatusChanges", "totalTime" }));
}

TEST_F (ProgressionStatisticsTest, TheFirstFinishIsTrueAsSoonAsBothValuesAreNotZero)
{
    EXPECT_TRUE (run (4, 2000.0));
    EXPECT_EQ (statistics.getNumRuns().get(), 1);
    EXPECT_EQ (statistics.getNumStatusChanges().get(), 4);
    EXPECT_EQ (statistics.getTotalTime().get(), 2.0);
    EXPECT_FALSE (statistics.isEmpty());
}

TEST_F (ProgressionStatisticsTest, ARunWithoutChangesOrWithoutTimeIsNotWorthSaving)
{
    EXPECT_FALSE (run (0, 2000.0));
    EXPECT_EQ (statistics.getNumRuns().get(), 1);
    EXPECT_EQ (statistics.getTotalTime().get(), 2.0);
    EXPECT_FALSE (run (4, 0.0));
    EXPECT_EQ (statistics.getNumRuns().get(), 2);
    EXPECT_EQ (statistics.getNumStatusChanges().get(), 4);
    EXPECT_EQ (statistics.getTotalTime().get(), 0.0);
}

TEST_F (ProgressionStatisticsTest, SuccessiveRunsAreWorthSavingWhenTheyDifferByMoreThanAFifth)
{
    EXPECT_TRUE (run (10, 10000.0));
    EXPECT_FALSE (run (11, 9000.0));     // ratios 1.1 and 0.9
    EXPECT_TRUE (run (14, 9000.0));      // 14 / 11 > 1.2
    EXPECT_TRUE (run (14, 7000.0));      // 7 / 9 < 0.8
    EXPECT_FALSE (run (14, 8000.0));     // 8 / 7 = 1.14
    EXPECT_EQ (statistics.getNumRuns().get(), 5);
    EXPECT_EQ (statistics.getNumStatusChanges().get(), 14);
    EXPECT_EQ (statistics.getTotalTime().get(), 8.0);
}

TEST_F (ProgressionStatisticsTest, TheProgressionIsTheMeanOfBothMeasuresAndNeverFalls)
{
    statistics.saveRun (10, 4.0);
    EXPECT_EQ (statistics.getNumStatusChanges().get(), 10);
    EXPECT_EQ (statistics.getTotalTime().get(), 4.0);
    statistics.start (status);
    EXPECT_EQ (statistics.getProgression(), 0.0);

    status.set ("a");
    status.set ("b");
    ManualClock::now += 1000.0;
    EXPECT_DOUBLE_EQ (statistics.getProgression(), (0.2 + 0.25) * 0.5);

    for (auto text : { "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n" })
        status.set (text);
    EXPECT_DOUBLE_EQ (statistics.getProgression(), (1.0 + 0.25) * 0.5);
    ManualClock::now += 9000.0;
    EXPECT_EQ (statistics.getProgression(), 1.0);

    // A new run starts again from nothing, and its estimate does not fall below its own best.
    statistics.start (status);
    ManualClock::now += 2000.0;
    EXPECT_DOUBLE_EQ (statistics.getProgression(), 0.25);
    EXPECT_DOUBLE_EQ (statistics.getProgression(), 0.25);
}

TEST_F (ProgressionStatisticsTest, AtTheStartTheProgressionIsZeroAndLeavesTheBestAlone)
{
    statistics.saveRun (2, 1.0);
    statistics.start (status);
    status.set ("a");
    EXPECT_EQ (statistics.getProgression(), 0.0);
    ManualClock::now += 500.0;
    EXPECT_DOUBLE_EQ (statistics.getProgression(), 0.5);
}

TEST_F (ProgressionStatisticsTest, OnlyTheChangesOfTheRunningStatusCount)
{
    statistics.saveRun (4, 1.0);
    statistics.start (status);
    status.set ("a");
    ManualClock::now += 1000.0;
    EXPECT_TRUE (statistics.finish());      // 1 of 4 changes
    status.set ("b");
    status.set ("c");
    EXPECT_EQ (statistics.getNumStatusChanges().get(), 1);
    EXPECT_EQ (status.getNumViews(), 0u);
}

TEST_F (ProgressionStatisticsTest, SavesAndLoadsItsVariables)
{
    run (3, 1500.0);
    auto state = statistics.makeState();
    EXPECT_EQ (state->toShortString(), "{numRuns = 1, numStatusChanges = 3, totalTime = 1.5}");
    ProgressionStatistics loaded;
    juce::String errors;
    ToStringExecutionContext context (errors);
    EXPECT_TRUE (loaded.loadFromState (context, state));
    EXPECT_EQ (loaded.getNumRuns().get(), 1);
    EXPECT_EQ (loaded.getNumStatusChanges().get(), 3);
    EXPECT_EQ (loaded.getTotalTime().get(), 1.5);
}
