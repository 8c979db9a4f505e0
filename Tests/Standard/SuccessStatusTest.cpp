#include <Tov/Standard/SuccessStatus.h>
#include "Atomic/AtomicTestSupport.h"
#include "Support/LogTestSupport.h"
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

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
    TestProgram::ensureTestLibraryTree();
    auto status = createOwned<SuccessStatus>();
    status->setError ("broken");
    const auto changes = status->getNumChanges();
    EXPECT_GT (changes, 0u);
    status->setError ("broken");
    EXPECT_EQ (status->getNumChanges(), changes);
    status->setWarning ("broken");
    EXPECT_GT (status->getNumChanges(), changes);
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

TEST (SuccessStatusTest, IsReflectedAsAStateAndAMessage)
{
    TestProgram::ensureTestLibraryTree();
    auto* statusClass = &SuccessStatus::staticClass;
    ASSERT_EQ (statusClass->getNumMemberVariables(), 2u);
    EXPECT_EQ (statusClass->getMemberVariableSignature (0)->getName(), "state");
    EXPECT_EQ (statusClass->getMemberVariableSignature (0)->getValueClass()->getName(), "SuccessState");
    EXPECT_EQ (statusClass->getMemberVariableSignature (1)->getName(), "message");
    EXPECT_EQ (statusClass->getMemberVariableSignature (1)->getValueClass()->getName(), "String");
}

TEST (SuccessStatusTest, SavesItsStateByNameAndLoadsItBack)
{
    TestProgram::ensureTestLibraryTree();
    SuccessStatus status (SuccessStateEnum::warning, "slow");
    EXPECT_EQ (status.makeState()->toString(), "{state = \"warning\", message = \"slow\"}");
    SuccessStatus loaded;
    ASSERT_TRUE (loadFromState (loaded, status.makeState()).result);
    EXPECT_TRUE (loaded.isWarning());
    EXPECT_EQ (loaded.getMessage(), "slow");
}

TEST (SuccessStatusTest, DescribesItsState)
{
    TestProgram::ensureTestLibraryTree();
    EXPECT_EQ (SuccessStatus (SuccessStateEnum::success, "").getStateDescription(), "Success");
    EXPECT_EQ (SuccessStatus (SuccessStateEnum::warning, "").getStateDescription(), "Warning");
    EXPECT_EQ (SuccessStatus (SuccessStateEnum::error, "").getStateDescription(), "Error");
}
