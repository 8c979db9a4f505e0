#include "TaskTestSupport.h"
#include <Tov/Standard/ToStringExecutionContext.h>
#include <memory>

using namespace tov;
using namespace tov::test;

namespace
{
class TaskTest : public TaskFixture
{
protected:
    std::unique_ptr<StepTask> task { make() };

    /** Updates the task that many times. */
    void update (int count)
    {
        for (int i = 0; i < count; ++i)
            task->update();
    }
};
} // namespace

TEST_F (TaskTest, StartsUninitializedWithItsVariablesInOrderBelowIt)
{
    EXPECT_TRUE (task->getState().is (TaskStateEnum::uninitialized));
    EXPECT_EQ (task->getState().toString(), "uninitialized");
    EXPECT_EQ (task->getProgression().get(), 0.0);
    EXPECT_EQ (task->getProgressionString().get(), "");
    EXPECT_FALSE (task->getPaused().get());
    EXPECT_FALSE (task->isCanceled());
    EXPECT_FALSE (task->isRunningInCurrentThread());
    EXPECT_EQ (task->getExecutionTime().inSeconds(), 0.0);
    EXPECT_EQ (task->name.get(), "Steps");

    juce::StringArray names;
    for (size_t i = 0; i < task->getNumVariables(); ++i)
    {
        names.add (task->getVariableSignature (i)->getName());
        EXPECT_EQ (task->getVariable (i)->getParent(), task.get()) << names[(int) i];
    }
    EXPECT_EQ (names, juce::StringArray ({ "name", "paused", "progression", "progressionString", "status", "state",
                                           "relatedFile", "terminatedEvent" }));
    EXPECT_EQ (task->getRelatedFile().getParent(), task.get());
    EXPECT_TRUE (Task::getStaticClass().isAbstract());
}

TEST_F (TaskTest, TheStatesAreTheEnumerationsElements)
{
    TaskState state;
    for (auto [value, text] : { std::pair<int32_t, const char*> { 0, "uninitialized" }, { 1, "running" }, { 2, "canceled" }, { 3, "terminated" } })
    {
        state.set (value, false);
        EXPECT_EQ (state.toString(), text);
    }
}

TEST_F (TaskTest, TheFirstUpdateOnlyInitializes)
{
    task->update();
    EXPECT_TRUE (task->getState().is (TaskStateEnum::running));
    EXPECT_EQ (task->getProgressionString().get(), "Task initializing, please wait...");
    EXPECT_EQ (task->numInitializations, 1);
    EXPECT_EQ (task->numSteps, 0);
    EXPECT_EQ (task->getProgression().get(), 0.0);
    EXPECT_TRUE (task->isRunningInCurrentThread());
}

TEST_F (TaskTest, AFailedInitializationEndsTheTaskWithItsError)
{
    task->initializationError = "no input";
    task->update();
    EXPECT_TRUE (task->isTerminated());
    EXPECT_TRUE (task->getStatus().isError());
    EXPECT_EQ (task->getStatus().getMessage(), "no input");
    EXPECT_EQ (task->getProgressionString().get(), "Error: no input");
    update (3);
    EXPECT_EQ (task->numInitializations, 1);
    EXPECT_EQ (task->numSteps, 0);
}

TEST_F (TaskTest, EachUpdateRunsOneStepAndShowsTheRemainingTime)
{
    update (2);
    EXPECT_EQ (task->numSteps, 1);
    EXPECT_EQ (task->getProgression().get(), 0.25);
    EXPECT_DOUBLE_EQ (task->getExecutionTime().inSeconds(), 0.1);
    // 0.1 s of 0.5 s measured: 1 + 0.2 * (0.4 - 1) = 0.88 s in all, 0.66 s of it left.
    EXPECT_DOUBLE_EQ (task->getPredictedExecutionTime (0.25).inSeconds(), 0.88);
    EXPECT_EQ (task->getProgressionString().get(), "Step 1    (Remaining time: 660 ms)");
}

TEST_F (TaskTest, TheProgressionIsLimitedToZeroToOne)
{
    task->endless = true;
    task->forcedProgression = 1.7;
    update (2);
    EXPECT_EQ (task->getProgression().get(), 1.0);
    task->increment = -0.5;
    task->forcedProgression = -1.0;
    update (1);
    EXPECT_EQ (task->getProgression().get(), 0.5);
    update (2);
    EXPECT_EQ (task->getProgression().get(), 0.0);
}

TEST_F (TaskTest, AProgressionOfExactlyZeroOrOneAddsNoRemainingTime)
{
    task->endless = true;
    task->forcedProgression = 0.0;
    update (2);
    EXPECT_EQ (task->getProgressionString().get(), "Step 1");
    task->forcedProgression = 1.0;
    update (1);
    EXPECT_EQ (task->getProgressionString().get(), "Step 2");
    task->forcedProgression = 0.5;
    update (1);
    EXPECT_TRUE (task->getProgressionString().get().startsWith ("Step 3    (Remaining time: "));
}

TEST_F (TaskTest, APersistentTaskShowsNoRemainingTime)
{
    std::unique_ptr<PersistentStepTask> watcher (make<PersistentStepTask>());
    EXPECT_TRUE (watcher->isPersistentTask());
    EXPECT_FALSE (task->isPersistentTask());
    watcher->update();
    watcher->update();
    EXPECT_DOUBLE_EQ (watcher->getProgression().get(), 0.1);
    EXPECT_EQ (watcher->getProgressionString().get(), "Step 1");
}

TEST_F (TaskTest, AStepThatAnswersFalseTerminatesAndNothingRunsAfterwards)
{
    update (5);
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->numSteps, 4);
    EXPECT_EQ (task->getProgression().get(), 1.0);
    EXPECT_EQ (task->getProgressionString().get(), "Step 4");
    EXPECT_TRUE (task->getStatus().isSuccess());
    const auto changes = task->getNumChanges();
    update (3);
    EXPECT_EQ (task->numSteps, 4);
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->getNumChanges(), changes);
}

TEST_F (TaskTest, ASubclassPutsItsStepErrorIntoTheStatus)
{
    task->stepError = "disk full";
    update (5);
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->getStatus().getMessage(), "disk full");
    EXPECT_TRUE (task->getStatus().isError());
}

TEST_F (TaskTest, ThePredictionSlidesFromTheAprioriTimeDuringTheFirstSecond)
{
    // a = 100 s, e = 0.25 s, progression 0.5: threshold 1 s, 100 + 0.25 * (0.5 - 100).
    task->aprioriSeconds = 100.0;
    task->increment = 0.5;
    task->stepMilliseconds = 250.0;
    update (2);
    EXPECT_EQ (task->getExecutionTime().inSeconds(), 0.25);
    EXPECT_EQ (task->getPredictedExecutionTime (0.5).inSeconds(), 75.125);
    EXPECT_EQ (task->getProgressionString().get(), "Step 1    (Remaining time: 37 secs)");
}

TEST_F (TaskTest, ThePredictionAtZeroIsTheAprioriTimeWhateverElapsed)
{
    task->aprioriSeconds = 42.0;
    task->endless = true;
    task->stepMilliseconds = 900.0;
    update (4);
    EXPECT_DOUBLE_EQ (task->getExecutionTime().inSeconds(), 2.7);
    EXPECT_EQ (task->getPredictedExecutionTime (0.0).inSeconds(), 42.0);
}

TEST_F (TaskTest, PastTheThresholdThePredictionIsTheMeasuredOne)
{
    task->aprioriSeconds = 10.0;
    task->stepMilliseconds = 500.0;
    update (2);
    EXPECT_EQ (task->getExecutionTime().inSeconds(), 0.5);
    EXPECT_EQ (task->getPredictedExecutionTime (0.25).inSeconds(), 2.0);
    EXPECT_EQ (task->getProgressionString().get(), "Step 1    (Remaining time: 1 sec)");
}

TEST_F (TaskTest, TheThresholdIsOnePercentOfALongAprioriTime)
{
    // a = 200 s: threshold 2 s; e = 1 s, progression 0.5: 200 + 0.5 * (2 - 200).
    task->aprioriSeconds = 200.0;
    task->increment = 0.5;
    task->stepMilliseconds = 1000.0;
    update (2);
    EXPECT_EQ (task->getPredictedExecutionTime (0.5).inSeconds(), 101.0);
    EXPECT_EQ (task->getProgressionString().get(), "Step 1    (Remaining time: 50 secs)");
}

TEST_F (TaskTest, AnUpdateWhilePausedDoesNotMoveTheTime)
{
    task->endless = true;
    update (2);
    EXPECT_DOUBLE_EQ (task->getExecutionTime().inSeconds(), 0.1);
    task->getPaused().set (true);
    ManualClock::now += 5000.0;
    update (3);
    EXPECT_EQ (task->numSteps, 1);
    EXPECT_DOUBLE_EQ (task->getExecutionTime().inSeconds(), 0.1);

    // The last update time stayed at 100 ms: the next step spans 5.1 s, and counts for 1 s.
    task->getPaused().set (false);
    update (1);
    EXPECT_EQ (task->numSteps, 2);
    EXPECT_DOUBLE_EQ (task->getExecutionTime().inSeconds(), 1.1);
}

TEST_F (TaskTest, APausedTaskHoldsItsState)
{
    task->getPaused().set (true);
    update (3);
    EXPECT_TRUE (task->getState().is (TaskStateEnum::uninitialized));
    EXPECT_EQ (task->numInitializations, 0);
    EXPECT_TRUE (task->isRunningInCurrentThread());
    task->getPaused().set (false);
    update (1);
    EXPECT_TRUE (task->getState().is (TaskStateEnum::running));
}

TEST_F (TaskTest, ALongStepAddsAtMostOneSecond)
{
    task->stepMilliseconds = 3000.0;
    update (3);
    EXPECT_EQ (task->getExecutionTime().inSeconds(), 2.0);
}

TEST_F (TaskTest, ACancelOnTheRunningThreadRunsTheCancellationAtOnceAndAgainAtTheNextUpdate)
{
    update (2);
    task->cancel();
    EXPECT_TRUE (task->getState().is (TaskStateEnum::canceled));
    EXPECT_EQ (task->numCancels, 1);
    EXPECT_TRUE (task->isCanceled());
    EXPECT_EQ (task->getProgression().get(), 1.0);
    EXPECT_EQ (task->getProgressionString().get(), "Canceled");

    task->update();
    EXPECT_EQ (task->numCancels, 2);
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->numSteps, 1);
    EXPECT_EQ (task->getProgressionString().get(), "Canceled");
}

TEST_F (TaskTest, ACancelBeforeAnyUpdateWaitsForTheFirstUpdate)
{
    task->cancel();
    EXPECT_TRUE (task->getState().is (TaskStateEnum::canceled));
    EXPECT_EQ (task->numCancels, 0);
    EXPECT_FALSE (task->isCanceled());
    task->update();
    EXPECT_EQ (task->numCancels, 1);
    EXPECT_TRUE (task->isCanceled());
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->numInitializations, 0);
    EXPECT_EQ (task->getProgressionString().get(), "Canceled");
}

TEST_F (TaskTest, ACanceledTaskThatIsPausedWaitsForItsResume)
{
    update (2);
    task->getPaused().set (true);
    task->cancel();
    EXPECT_EQ (task->numCancels, 1);
    update (2);
    EXPECT_TRUE (task->getState().is (TaskStateEnum::canceled));
    task->getPaused().set (false);
    task->update();
    EXPECT_TRUE (task->isTerminated());
}

TEST_F (TaskTest, ATerminatedTaskStaysTerminatedWhenCanceled)
{
    update (5);
    ASSERT_TRUE (task->isTerminated());
    task->cancel();
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->numCancels, 0);
    EXPECT_FALSE (task->isCanceled());
}

TEST_F (TaskTest, ACopyTakesTheVariablesAndTheTimes)
{
    task->endless = true;
    task->stepMilliseconds = 300.0;
    update (3);
    task->getRelatedFile().set (juce::File ("/tmp/render.mov"));
    task->getStatus().setWarning ("slow disk");
    StepTask copy (*task);
    EXPECT_EQ (copy.name.get(), "Steps");
    EXPECT_EQ (copy.getProgression().get(), 0.5);
    EXPECT_TRUE (copy.getProgressionString().get().startsWith ("Step 2    (Remaining time: "));
    EXPECT_TRUE (copy.getState().is (TaskStateEnum::running));
    EXPECT_EQ (copy.getStatus().getMessage(), "slow disk");
    EXPECT_EQ (copy.getRelatedFile().getFullPathName(), "/tmp/render.mov");
    EXPECT_DOUBLE_EQ (copy.getExecutionTime().inSeconds(), 0.6);
    EXPECT_TRUE (copy.isRunningInCurrentThread());
    EXPECT_EQ (copy.getProgression().getParent(), &copy);

    // The last update time came along: the copy's next step spans only its own 300 ms.
    copy.setMillisecondClock (&ManualClock::get);
    copy.update();
    EXPECT_DOUBLE_EQ (copy.getExecutionTime().inSeconds(), 0.9);
}

TEST_F (TaskTest, TheRelatedFileSavesAsItsFullPath)
{
    task->getRelatedFile().set (juce::File ("/data/scene.txt"));
    EXPECT_EQ (task->getRelatedFile().toString(), "/data/scene.txt");
    EXPECT_EQ (task->getRelatedFile().getFileName(), "scene.txt");
    auto state = task->getRelatedFile().makeState();
    EXPECT_EQ (state->toShortString(), "\"/data/scene.txt\"");
    NativeFile loaded;
    juce::String errors;
    ToStringExecutionContext context (errors);
    EXPECT_TRUE (loaded.loadFromState (context, state));
    EXPECT_EQ (loaded.get(), juce::File ("/data/scene.txt"));
}
