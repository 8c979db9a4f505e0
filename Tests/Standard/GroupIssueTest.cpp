#include <Tov/Standard/GroupIssue.h>
#include <Tov/Standard/ToGroupIssueExecutionContextView.h>
#include <Tov/Standard/ExecutionContext.h>
#include "Atomic/AtomicTestSupport.h"
#include "Support/LogTestSupport.h"
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

namespace
{
class GroupIssueTest : public ::testing::Test
{
protected:
    void SetUp() override  { TestProgram::ensureTestLibraryTree(); }

    Owned<GroupIssue> group = createOwned<GroupIssue>();

    LeafIssue* leaf (size_t index) const  { return dynamic_cast<LeafIssue*> (group->getIssue (index)); }
};
} // namespace

TEST_F (GroupIssueTest, TheSameErrorTwiceIsOneLeafCountedTwice)
{
    group->addIssue (SuccessStateEnum::error, "disk full", nullptr);
    group->addIssue (SuccessStateEnum::error, "disk full", nullptr);
    ASSERT_EQ (group->getNumIssues(), 1u);
    ASSERT_NE (leaf (0), nullptr);
    EXPECT_EQ (leaf (0)->getNumOccurences().get(), 2);
    EXPECT_TRUE (leaf (0)->getStatus().isError());
    EXPECT_EQ (leaf (0)->getStatus().getMessage(), "disk full");
}

TEST_F (GroupIssueTest, ANewLeafCountsOnceAndSetsTheStatusLine)
{
    group->addIssue (SuccessStateEnum::warning, "slow disk", nullptr);
    ASSERT_EQ (group->getNumIssues(), 1u);
    EXPECT_EQ (leaf (0)->getNumOccurences().get(), 1);
    EXPECT_TRUE (leaf (0)->getStatus().isWarning());
    EXPECT_EQ (leaf (0)->toString(), "Warning: slow disk");
    EXPECT_EQ (group->getStatus(), "Warning: slow disk");
    EXPECT_GT (leaf (0)->getTime().get().toMilliseconds(), 0);
}

TEST_F (GroupIssueTest, ARepeatLeavesTheStatusLineAlone)
{
    group->addIssue (SuccessStateEnum::error, "disk full", nullptr);
    group->setStatus ("Saving");
    group->addIssue (SuccessStateEnum::error, "disk full", nullptr);
    EXPECT_EQ (group->getStatus(), "Saving");
}

TEST_F (GroupIssueTest, TheSameMessageWithAnotherStateIsAnotherIssue)
{
    group->addIssue (SuccessStateEnum::error, "disk full", nullptr);
    group->addIssue (SuccessStateEnum::warning, "disk full", nullptr);
    EXPECT_EQ (group->getNumIssues(), 2u);
}

TEST_F (GroupIssueTest, The102ndDistinctIssueIsDroppedButKnownOnesStillCount)
{
    for (int i = 0; i < 101; ++i)
        group->addIssue (SuccessStateEnum::error, "error " + juce::String (i), nullptr);
    ASSERT_EQ (group->getNumIssues(), 101u);
    EXPECT_EQ (group->getStatus(), "Error: error 100");

    group->addIssue (SuccessStateEnum::error, "one too many", nullptr);
    EXPECT_EQ (group->getNumIssues(), 101u);
    EXPECT_EQ (group->getStatus(), "Too many issues...");

    group->addIssue (SuccessStateEnum::error, "error 7", nullptr);
    EXPECT_EQ (group->getNumIssues(), 101u);
    EXPECT_EQ (leaf (7)->getNumOccurences().get(), 2);
}

TEST_F (GroupIssueTest, ASuccessStateGivesALeafWithAnErrorState)
{
    group->addIssue (SuccessStateEnum::success, "all fine", nullptr);
    ASSERT_EQ (group->getNumIssues(), 1u);
    EXPECT_TRUE (leaf (0)->getStatus().isError());
    EXPECT_EQ (leaf (0)->toString(), "Error: all fine");
}

TEST_F (GroupIssueTest, AnEmptyWarningIsASuccessLeaf)
{
    group->addIssue (SuccessStateEnum::warning, "", nullptr);
    ASSERT_EQ (group->getNumIssues(), 1u);
    EXPECT_TRUE (leaf (0)->getStatus().isSuccess());
    EXPECT_EQ (group->getIssuesSummary(), "1 warning");
}

TEST_F (GroupIssueTest, KeepsAWeakPointerToTheRelatedObject)
{
    auto related = createOwned<TestInteger>();
    auto other = createOwned<TestInteger>();
    group->addIssue (SuccessStateEnum::error, "bad value", related.get());
    EXPECT_EQ (leaf (0)->getRelatedObject().get(), related.get());
    group->addIssue (SuccessStateEnum::error, "bad value", other.get());
    EXPECT_EQ (leaf (0)->getRelatedObject().get(), other.get());
    other.reset();
    EXPECT_EQ (leaf (0)->getRelatedObject().get(), nullptr);
}

TEST_F (GroupIssueTest, SummarisesErrorsAndWarnings)
{
    EXPECT_EQ (group->getIssuesSummary(), "No issues");
    group->addIssue (SuccessStateEnum::warning, "w1", nullptr);
    EXPECT_EQ (group->getIssuesSummary(), "1 warning");
    group->addIssue (SuccessStateEnum::error, "e1", nullptr);
    EXPECT_EQ (group->getIssuesSummary(), "1 error and 1 warning");
    group->addIssue (SuccessStateEnum::error, "e2", nullptr);
    EXPECT_EQ (group->getIssuesSummary(), "2 errors and 1 warning");
    group->addIssue (SuccessStateEnum::warning, "w2", nullptr);
    group->addIssue (SuccessStateEnum::warning, "w3", nullptr);
    EXPECT_EQ (group->getIssuesSummary(), "2 errors and 3 warnings");
}

TEST_F (GroupIssueTest, SummaryOfErrorsAloneHasNoWarnings)
{
    group->addIssue (SuccessStateEnum::error, "e1", nullptr);
    group->addIssue (SuccessStateEnum::error, "e2", nullptr);
    EXPECT_EQ (group->getIssuesSummary(), "2 errors");
}

TEST_F (GroupIssueTest, SummaryOfSubgroupsAloneIsOtherMessages)
{
    group->getIssues();
    auto* subgroup = static_cast<GroupIssue*> (GroupIssue::staticClass.createObject (nullptr));
    const_cast<OwnedVector<Issue>&> (group->getIssues()).append (subgroup, false);
    EXPECT_EQ (group->getIssuesSummary(), "Other messages");
    EXPECT_FALSE (group->doesContainErrors());
}

TEST_F (GroupIssueTest, ContainsErrorsOnlyWithAnErrorLeaf)
{
    EXPECT_FALSE (group->doesContainErrors());
    group->addIssue (SuccessStateEnum::warning, "w", nullptr);
    EXPECT_FALSE (group->doesContainErrors());
    group->addIssue (SuccessStateEnum::error, "e", nullptr);
    EXPECT_TRUE (group->doesContainErrors());
}

TEST_F (GroupIssueTest, AddingANewIssueNotifiesTheGroup)
{
    const auto before = group->getNumChanges();
    group->addIssue (SuccessStateEnum::error, "e", nullptr);
    EXPECT_GT (group->getNumChanges(), before);
}

TEST_F (GroupIssueTest, IsAbstractBelowIssue)
{
    EXPECT_TRUE (Issue::staticClass.isAbstract());
    EXPECT_FALSE (LeafIssue::staticClass.isAbstract());
    EXPECT_TRUE (GroupIssue::staticClass.inheritsFrom (&Issue::staticClass));
    EXPECT_EQ (GroupIssue::staticClass.findMemberVariableSignature ("issues")->getValueClass()->getName(), "OwnedVector(Issue)");
    EXPECT_EQ (LeafIssue::staticClass.findMemberVariableSignature ("numOccurences")->getValueClass()->getName(), "StrictlyPositiveInteger");
}

TEST_F (GroupIssueTest, SavesAndLoadsItsLeaves)
{
    group->setName ("Import");
    group->addIssue (SuccessStateEnum::error, "e1", nullptr);
    group->addIssue (SuccessStateEnum::warning, "w1", nullptr);
    auto copy = createOwned<GroupIssue>();
    ASSERT_TRUE (saveAndLoad (*group, *copy).result);
    EXPECT_EQ (copy->getName(), "Import");
    ASSERT_EQ (copy->getNumIssues(), 2u);
    EXPECT_EQ (copy->getIssue (1)->toString(), "Warning: w1");
    EXPECT_EQ (copy->getIssuesSummary(), "1 error and 1 warning");
}

//==============================================================================
namespace
{
class ToGroupIssueExecutionContextViewTest : public GroupIssueTest
{
protected:
    ExecutionContext context;
    void SetUp() override
    {
        GroupIssueTest::SetUp();
        context.addView (new ToGroupIssueExecutionContextView (*group));
    }
};
} // namespace

TEST_F (ToGroupIssueExecutionContextViewTest, EnteredBlocksAndInformationSetTheStatus)
{
    context.enter ("Loading");
    EXPECT_EQ (group->getStatus(), "Loading");
    context.information ("halfway");
    EXPECT_EQ (group->getStatus(), "halfway");
    context.enter ("Parsing");
    context.leave();
    EXPECT_EQ (group->getStatus(), "Parsing: ok");
    context.leave();
    EXPECT_EQ (group->getStatus(), "Loading: ok");
}

TEST_F (ToGroupIssueExecutionContextViewTest, LeavingWithoutANameDoesNothing)
{
    ToGroupIssueExecutionContextView view (*group);
    group->setStatus ("unchanged");
    view.leavedCallback();
    EXPECT_EQ (group->getStatus(), "unchanged");
}

TEST_F (ToGroupIssueExecutionContextViewTest, WarningsAndErrorsBecomeLeaves)
{
    context.warning ("slow");
    context.error ("broken");
    context.error ("broken");
    ASSERT_EQ (group->getNumIssues(), 2u);
    EXPECT_EQ (group->getIssue (0)->toString(), "Warning: slow");
    EXPECT_EQ (group->getIssue (1)->toString(), "Error: broken");
    EXPECT_EQ (leaf (1)->getNumOccurences().get(), 2);
    EXPECT_EQ (group->getIssuesSummary(), "1 error and 1 warning");
}
