#include "TaskTestSupport.h"
#include "Support/DeletionWatcher.h"
#include <memory>

using namespace tov;
using namespace tov::test;

namespace
{
class GroupTaskTest : public TaskFixture
{
protected:
    std::unique_ptr<GroupTask> group { make<GroupTask>() };

    /** A step task of the group, which owns it. */
    StepTask& add (const juce::String& name, double increment = 0.25)
    {
        auto* task = make (name, increment);
        group->addTask (task);
        return *task;
    }

    void update (int count)
    {
        for (int i = 0; i < count; ++i)
            group->update();
    }

    juce::String text() const    { return group->getProgressionString().get(); }
};
} // namespace

TEST_F (GroupTaskTest, HasItsDefaultNameFlagsAndVariables)
{
    EXPECT_EQ (group->name.get(), "Tasks (group)");
    EXPECT_TRUE (group->isPausable());
    EXPECT_TRUE (group->isCancelable());
    EXPECT_FALSE (group->getSequential().get());
    GroupTask fixed (false, true);
    EXPECT_FALSE (fixed.isPausable());
    EXPECT_TRUE (fixed.isCancelable());

    juce::StringArray names;
    for (size_t i = 0; i < group->getNumVariables(); ++i)
        names.add (group->getVariableSignature (i)->getName());
    EXPECT_EQ (names, juce::StringArray ({ "name", "paused", "progression", "progressionString", "status", "state",
                                           "relatedFile", "terminatedEvent", "tasks", "pausable", "cancelable", "sequential" }));
    EXPECT_EQ (group->getTasks().getClassName(), "OwnedVector(Task)");
    EXPECT_EQ (group->getTasks().getParent(), group.get());
}

TEST_F (GroupTaskTest, AnEmptyGroupThatIsNotSequentialStaysRunningAtZero)
{
    update (5);
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
    EXPECT_EQ (group->getProgression().get(), 0.0);
    EXPECT_EQ (text(), "");
}

TEST_F (GroupTaskTest, AnEmptySequentialGroupTerminatesAtItsFirstPass)
{
    group->getSequential().set (true);
    group->update();
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
    group->update();
    EXPECT_TRUE (group->isTerminated());
    EXPECT_EQ (group->getProgression().get(), 0.0);
    EXPECT_EQ (text(), "");
}

TEST_F (GroupTaskTest, OneChildShowsZeroOfOneTask)
{
    add ("first");
    update (2);
    EXPECT_EQ (text(), "0 / 1 task");
    EXPECT_EQ (group->getProgression().get(), 0.0);
}

TEST_F (GroupTaskTest, TwoChildrenOneOfThemDoneShowOneOfTwoTasks)
{
    add ("first", 1.0);
    add ("second");
    update (4);
    // first: 0.1 s, done; second: not started, 1 s a priori. The group measured 0.1 s
    // at 1/11: 1 + 0.2 * (1.1 - 1) = 1.02 s in all, 0.927 s of it left.
    EXPECT_DOUBLE_EQ (group->getProgression().get(), 0.1 / 1.1);
    EXPECT_EQ (text(), "1 / 2 tasks    (Remaining time: 927 ms)");
}

TEST_F (GroupTaskTest, WithAllChildrenPersistentTheProgressionIsOneAndTheCountZero)
{
    group->addTask (make<PersistentStepTask> ("a"));
    group->addTask (make<PersistentStepTask> ("b"));
    update (6);
    EXPECT_EQ (group->getProgression().get(), 1.0);
    EXPECT_EQ (text(), "0 / 2 tasks");
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
}

TEST_F (GroupTaskTest, PersistentChildrenAreLeftOutOfTheAccounting)
{
    group->addTask (make<PersistentStepTask>());
    auto& child = add ("child", 1.0);
    update (7);
    EXPECT_TRUE (child.getState().is (TaskStateEnum::uninitialized));
    EXPECT_EQ (group->getProgression().get(), 0.0);
    EXPECT_EQ (text(), "0 / 2 tasks");
}

TEST_F (GroupTaskTest, OnlyOneChildIsUpdatedPerPass)
{
    auto& first = add ("first");
    auto& second = add ("second");
    update (4);
    EXPECT_EQ (first.numSteps, 2);
    EXPECT_EQ (second.numInitializations, 0);
    update (3);
    EXPECT_TRUE (first.isTerminated());
    EXPECT_EQ (second.numInitializations, 1);
}

TEST_F (GroupTaskTest, TheProgressionIsTheChildrensTimeOverTheirPredictedTotal)
{
    add ("first");
    add ("second");
    update (4);
    // first: 0.1 s at 0.25, predicted 1 + 0.2 * (0.4 - 1) = 0.88 s; second: 1 s a priori.
    EXPECT_DOUBLE_EQ (group->getProgression().get(), 0.1 / 1.88);
    EXPECT_TRUE (text().startsWith ("0 / 2 tasks    (Remaining time: "));
}

TEST_F (GroupTaskTest, AllChildrenRunOnTheGroupsThread)
{
    auto& first = add ("first");
    auto& second = add ("second");
    update (2);
    EXPECT_TRUE (first.isRunningInCurrentThread());
    EXPECT_TRUE (second.isRunningInCurrentThread());
    EXPECT_EQ (second.numInitializations, 0);
}

TEST_F (GroupTaskTest, ASequentialGroupStopsAtTheFirstFailedChildAndTakesItsStatus)
{
    group->getSequential().set (true);
    add ("first").initializationError = "broken";
    auto& second = add ("second");
    auto& third = add ("third");
    update (3);
    EXPECT_TRUE (group->isTerminated());
    EXPECT_TRUE (group->getStatus().isError());
    EXPECT_EQ (group->getStatus().getMessage(), "broken");
    EXPECT_TRUE (second.getState().is (TaskStateEnum::canceled));
    EXPECT_TRUE (third.getState().is (TaskStateEnum::canceled));
    EXPECT_EQ (second.numInitializations, 0);
    EXPECT_EQ (second.numCancels, 1);
}

TEST_F (GroupTaskTest, AFailedChildOfAGroupThatIsNotSequentialStopsNothing)
{
    add ("first").initializationError = "broken";
    auto& second = add ("second", 1.0);
    update (6);
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
    EXPECT_TRUE (group->getStatus().isSuccess());
    EXPECT_TRUE (second.isTerminated());
    EXPECT_EQ (text(), "2 / 2 tasks");
}

TEST_F (GroupTaskTest, ASequentialGroupEndsWhenAllItsChildrenEnded)
{
    group->getSequential().set (true);
    add ("first", 1.0);
    add ("second", 1.0);
    update (5);
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
    update (1);
    EXPECT_TRUE (group->isTerminated());
    EXPECT_TRUE (group->getStatus().isSuccess());
    EXPECT_EQ (group->getProgression().get(), 1.0);
    EXPECT_EQ (text(), "2 / 2 tasks");
}

TEST_F (GroupTaskTest, AGroupThatIsNotSequentialWaitsForNewChildren)
{
    add ("first", 1.0);
    update (8);
    EXPECT_TRUE (group->getState().is (TaskStateEnum::running));
    EXPECT_EQ (text(), "1 / 1 task");
    auto& late = add ("late", 1.0);
    update (2);
    EXPECT_EQ (late.numSteps, 1);
}

TEST_F (GroupTaskTest, ASequentialGroupEndsAtAPausedChild)
{
    group->getSequential().set (true);
    add ("first").getPaused().set (true);
    auto& second = add ("second");
    update (2);
    EXPECT_TRUE (group->isTerminated());
    EXPECT_EQ (second.numInitializations, 0);
    EXPECT_EQ (text(), "0 / 2 tasks");
}

TEST_F (GroupTaskTest, AGroupThatIsNotSequentialPassesOverAPausedChild)
{
    auto& first = add ("first");
    first.getPaused().set (true);
    auto& second = add ("second");
    update (3);
    EXPECT_EQ (first.numInitializations, 0);
    EXPECT_EQ (second.numSteps, 1);
}

TEST_F (GroupTaskTest, ACanceledChildIsDeletedAtTheNextPass)
{
    auto& first = add ("first");
    first.endless = true;
    add ("second");
    update (2);
    DeletionWatcher watcher (first);
    first.cancel();
    EXPECT_EQ (first.numCancels, 1);
    const auto changes = group->getTasks().getNumChanges();
    update (1);
    EXPECT_TRUE (watcher.deleted);
    EXPECT_EQ (group->getNumTasks(), 1u);
    EXPECT_EQ (group->getTask (0)->name.get(), "second");
    EXPECT_EQ (group->getTasks().getNumChanges(), changes + 1);
    EXPECT_TRUE (group->getTask (0)->getState().is (TaskStateEnum::running));
}

TEST_F (GroupTaskTest, CancelingTheGroupCancelsEveryChild)
{
    auto& first = add ("first");
    auto& second = add ("second");
    update (3);
    group->cancel();
    EXPECT_EQ (first.numCancels, 1);
    EXPECT_EQ (second.numCancels, 1);
    EXPECT_TRUE (second.getState().is (TaskStateEnum::canceled));
    group->update();
    EXPECT_TRUE (group->isTerminated());
    EXPECT_EQ (text(), "Canceled");
    EXPECT_EQ (first.numCancels, 1);
}

TEST_F (GroupTaskTest, ThePauseOfTheGroupGoesToEveryChild)
{
    auto& first = add ("first");
    auto& second = add ("second");
    group->getPaused().set (true);
    EXPECT_TRUE (first.getPaused().get());
    EXPECT_TRUE (second.getPaused().get());
    group->getPaused().set (false);
    EXPECT_FALSE (first.getPaused().get());
    EXPECT_FALSE (second.getPaused().get());
}

TEST_F (GroupTaskTest, RemovingTerminatedTasksNotifiesOnlyWhenTheCountChanged)
{
    add ("first", 1.0);
    add ("second");
    const auto changes = group->getTasks().getNumChanges();
    group->removeTerminatedTasks (true);
    EXPECT_EQ (group->getTasks().getNumChanges(), changes);
    update (3);
    ASSERT_TRUE (group->getTask (0)->isTerminated());
    const auto before = group->getTasks().getNumChanges();
    group->removeTerminatedTasks (true);
    EXPECT_EQ (group->getNumTasks(), 1u);
    EXPECT_EQ (group->getTasks().getNumChanges(), before + 1);
    EXPECT_EQ (group->getTask (0)->name.get(), "second");
}

TEST_F (GroupTaskTest, RemovingTerminatedTasksWithoutNotifyIsSilent)
{
    add ("first", 1.0);
    update (3);
    const auto before = group->getTasks().getNumChanges();
    group->removeTerminatedTasks (false);
    EXPECT_EQ (group->getNumTasks(), 0u);
    EXPECT_EQ (group->getTasks().getNumChanges(), before);
}

TEST_F (GroupTaskTest, AnyTaskRunningCountsOnlyChildrenRunningAndNotPaused)
{
    auto& first = add ("first");
    EXPECT_FALSE (group->isAnyTaskCurrentlyRunning());
    update (2);
    EXPECT_TRUE (group->isAnyTaskCurrentlyRunning());
    first.getPaused().set (true);
    EXPECT_FALSE (group->isAnyTaskCurrentlyRunning());
    group->clearTasks();
    EXPECT_EQ (group->getNumTasks(), 0u);
    EXPECT_FALSE (group->isAnyTaskCurrentlyRunning());
}

TEST_F (GroupTaskTest, TheNameOfAGroupIsEditableOnlyBelowATask)
{
    EXPECT_FALSE (group->name.isEditable());
    EXPECT_TRUE (group->getSequential().isEditable());
    auto* inner = make<GroupTask>();
    group->addTask (inner);
    EXPECT_TRUE (inner->name.isEditable());
    EXPECT_TRUE (group->getTask (0)->getPaused().isEditable());
}
