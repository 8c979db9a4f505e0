#include <Tov/Standard/SuccessStatus.h>
#include <gtest/gtest.h>

using namespace tov;

TEST (SuccessStatusTest, StartsAsAnEmptySuccess)
{
    SuccessStatus status;
    EXPECT_TRUE (status.isSuccess());
    EXPECT_EQ (status.getMessage(), "");
    EXPECT_EQ ((int) SuccessStateEnum::success, 0);
    EXPECT_EQ ((int) SuccessStateEnum::warning, 1);
    EXPECT_EQ ((int) SuccessStateEnum::error, 2);
}

TEST (SuccessStatusTest, BoolFormMakesASuccessWithAMessageAWarning)
{
    SuccessStatus status;
    status.set (true, "saved");
    EXPECT_TRUE (status.isWarning());
    EXPECT_EQ (status.getMessage(), "saved");

    status.set (false, "");
    EXPECT_TRUE (status.isError());
    EXPECT_EQ (status.getMessage(), "");

    status.set (true, "");
    EXPECT_TRUE (status.isSuccess());
    EXPECT_EQ (status.getMessage(), "");
}

TEST (SuccessStatusTest, SettingTheSameValueAgainIsNoChange)
{
    SuccessStatus status;
    status.setError ("broken");
    const auto changes = status.getNumChanges();
    status.setError ("broken");
    EXPECT_EQ (status.getNumChanges(), changes);
    status.setWarning ("broken");
    EXPECT_GT (status.getNumChanges(), changes);
}

TEST (SuccessStatusTest, CopiesComparesAndShowsItsMessage)
{
    SuccessStatus a (SuccessStateEnum::warning, "slow");
    SuccessStatus b;
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_TRUE (a.equals (b));
    EXPECT_TRUE (b.isWarning());
    EXPECT_EQ (b.toString(), "slow");
    EXPECT_EQ (b.getClassName(), "SuccessStatus");
}
