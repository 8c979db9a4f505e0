#include <Tov/Standard/Deadline.h>
#include <gtest/gtest.h>

using tov::Deadline;

TEST (DeadlineTest, ANegativeOrZeroTimeOutHasPassedAtOnce)
{
    EXPECT_TRUE (Deadline (-1).hasPassed());
    EXPECT_EQ (Deadline (-1000).getRemainingMilliseconds(), 0);
    EXPECT_TRUE (Deadline (0).hasPassed());
}

TEST (DeadlineTest, WhatIsLeftNeverExceedsTheTimeOut)
{
    const Deadline deadline (60000);
    const int remaining = deadline.getRemainingMilliseconds();
    EXPECT_LE (remaining, 60000);
    EXPECT_GT (remaining, 50000);
    EXPECT_FALSE (deadline.hasPassed());
}

TEST (DeadlineTest, AShortDeadlinePassesAndStaysPassed)
{
    const Deadline deadline (20);
    const auto start = juce::Time::getMillisecondCounter();
    while (! deadline.hasPassed())
        ASSERT_LT (juce::Time::getMillisecondCounter() - start, 10000u);   // a deadline that never passes fails here
    EXPECT_GE (juce::Time::getMillisecondCounter() - start, 19u);
    EXPECT_EQ (deadline.getRemainingMilliseconds(), 0);
}
