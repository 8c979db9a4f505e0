#include <Tov/Standard/LocalMean.h>
#include <Tov/Standard/LocalMeanAndVariance.h>
#include <gtest/gtest.h>
#include <cmath>

using namespace tov;

TEST (LocalMeanTest, HistorySizeZeroHoldsNothing)
{
    LocalMean mean (0);
    mean.push (3.0);
    mean.push (5.0);
    EXPECT_EQ (mean.getNumValues(), 0u);
    EXPECT_EQ (mean.getSumOfValues(), 0.0);
    EXPECT_EQ (mean.getMean(), 0.0);
    EXPECT_TRUE (mean.isHistoryFull());
}

TEST (LocalMeanTest, EmptyWindowHasMeanZero)
{
    LocalMean mean (4);
    EXPECT_EQ (mean.getMean(), 0.0);
    EXPECT_FALSE (mean.isHistoryFull());
}

TEST (LocalMeanTest, OldestValuesLeaveAFullWindow)
{
    LocalMean mean (3);
    for (double value : { 1.0, 2.0, 3.0, 4.0, 5.0 })
        mean.push (value);
    EXPECT_EQ (mean.getValues(), (std::vector<double> { 3.0, 4.0, 5.0 }));
    EXPECT_EQ (mean.getSumOfValues(), 12.0);
    EXPECT_EQ (mean.getMean(), 4.0);
    EXPECT_TRUE (mean.isHistoryFull());
}

TEST (LocalMeanTest, SumIsKeptIncrementally)
{
    // 1e16 + 1 is 1e16 in doubles: the first 1 is lost in the running sum for good, where a
    // sum made anew from the window would be 2.
    LocalMean mean (2);
    mean.push (1e16);
    mean.push (1.0);
    mean.push (1.0);
    EXPECT_EQ (mean.getValues(), (std::vector<double> { 1.0, 1.0 }));
    EXPECT_EQ (mean.getSumOfValues(), 1.0);
}

TEST (LocalMeanTest, IncrementAddsToEveryValueAndTheSum)
{
    LocalMean mean (3);
    mean.push (1.0);
    mean.push (2.0);
    mean.increment (10.0);
    EXPECT_EQ (mean.getValues(), (std::vector<double> { 11.0, 12.0 }));
    EXPECT_EQ (mean.getSumOfValues(), 23.0);
}

TEST (LocalMeanTest, SetValuesKeepsTheNewestWithinTheHistory)
{
    LocalMean mean (2);
    mean.setValues ({ 1.0, 2.0, 3.0 });
    EXPECT_EQ (mean.getValues(), (std::vector<double> { 2.0, 3.0 }));
    EXPECT_EQ (mean.getSumOfValues(), 5.0);
}

TEST (LocalMeanTest, SmallerHistoryDropsTheOldest)
{
    LocalMean mean (4);
    mean.setValues ({ 1.0, 2.0, 3.0, 4.0 });
    mean.setHistorySize (2);
    EXPECT_EQ (mean.getHistorySize(), 2u);
    EXPECT_EQ (mean.getValues(), (std::vector<double> { 3.0, 4.0 }));
    EXPECT_EQ (mean.getSumOfValues(), 7.0);
    mean.setHistorySize (0);
    EXPECT_EQ (mean.getNumValues(), 0u);
    EXPECT_EQ (mean.getSumOfValues(), 0.0);
}

TEST (LocalMeanTest, ResetEmptiesTheWindow)
{
    LocalMean mean (2);
    mean.push (1.0);
    mean.reset();
    EXPECT_EQ (mean.getNumValues(), 0u);
    EXPECT_EQ (mean.getSumOfValues(), 0.0);
    EXPECT_EQ (mean.getHistorySize(), 2u);
}

TEST (LocalMeanAndVarianceTest, VarianceIsMeanOfSquaresMinusSquaredMean)
{
    LocalMeanAndVariance statistics (4);
    for (double value : { 2.0, 4.0, 4.0, 6.0 })
        statistics.push (value);
    EXPECT_EQ (statistics.getMean(), 4.0);
    EXPECT_EQ (statistics.getVariance(), 18.0 - 16.0);
    EXPECT_EQ (statistics.getStandardDeviation(), std::sqrt (2.0));
}

TEST (LocalMeanAndVarianceTest, DeviationOfEqualValuesIsZero)
{
    // Three times 0.7 leave a positive rounding residue of 1.67e-16 as variance, whose root
    // would be 1.3e-8: below the double's epsilon it counts as none.
    LocalMeanAndVariance statistics (3);
    for (int i = 0; i < 3; ++i)
        statistics.push (0.7);
    EXPECT_GT (statistics.getVariance(), 0.0);
    EXPECT_LE (statistics.getVariance(), 2.220446049250313e-16);
    EXPECT_EQ (statistics.getStandardDeviation(), 0.0);
}

TEST (LocalMeanAndVarianceTest, IncrementMakesTheSquaresAnew)
{
    LocalMeanAndVariance statistics (3);
    statistics.push (1.0);
    statistics.push (3.0);
    statistics.increment (1.0);
    EXPECT_EQ (statistics.getValues(), (std::vector<double> { 2.0, 4.0 }));
    EXPECT_EQ (statistics.getMean(), 3.0);
    EXPECT_EQ (statistics.getVariance(), 10.0 - 9.0);
}

TEST (LocalMeanAndVarianceTest, WindowSlidesForBoth)
{
    LocalMeanAndVariance statistics (2);
    for (double value : { 100.0, 1.0, 3.0 })
        statistics.push (value);
    EXPECT_TRUE (statistics.isHistoryFull());
    EXPECT_EQ (statistics.getMean(), 2.0);
    EXPECT_EQ (statistics.getVariance(), 1.0);
    statistics.setHistorySize (1);
    EXPECT_EQ (statistics.getVariance(), 0.0);
    statistics.reset();
    EXPECT_EQ (statistics.getNumValues(), 0u);
}
