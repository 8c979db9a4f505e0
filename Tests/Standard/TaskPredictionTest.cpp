#include "TaskTestSupport.h"
#include <cmath>
#include <memory>

using namespace tov;
using namespace tov::test;

namespace
{
class TaskPredictionTest : public TaskFixture
{
protected:
    /** The remaining time that the task shows at its progression. */
    static double predictedRemaining (Task& task)
    {
        const double progression = task.getProgression().get();
        return task.getPredictedExecutionTime (progression).inSeconds() * (1.0 - progression);
    }
};
} // namespace

// 64 steps of 62.5 ms, 1/64 each (binary fractions, which add up exactly): 4 s in all, 10 s
// expected a priori, so the threshold of 0.5 s is passed at the 8th step.
TEST_F (TaskPredictionTest, ALinearTaskIsPredictedExactlyOncePastTheThreshold)
{
    std::unique_ptr<StepTask> task (make ("Linear", 1.0 / 64.0, 62.5));
    task->aprioriSeconds = 10.0;
    task->update();
    int numChecked = 0;
    while (! task->isTerminated())
    {
        task->update();
        const double progression = task->getProgression().get();
        if (progression >= 1.0)
            break;
        const double trueRemaining = 4.0 * (1.0 - progression);
        const double remaining = predictedRemaining (*task);
        EXPECT_EQ (task->getProgressionString().get(), "Step " + juce::String (task->numSteps) + remainingText (remaining));
        if (task->getExecutionTime().inSeconds() >= 0.5)
        {
            EXPECT_EQ (remaining, trueRemaining) << "at " << progression;
            ++numChecked;
        }
    }
    EXPECT_EQ (numChecked, 56);
    EXPECT_EQ (task->numSteps, 64);
}

TEST_F (TaskPredictionTest, BeforeTheThresholdThePredictionSlidesFromTheAprioriTime)
{
    std::unique_ptr<StepTask> task (make ("Linear", 0.01, 50.0));
    task->aprioriSeconds = 10.0;
    for (int i = 0; i < 6; ++i)
        task->update();
    // e = 0.25 s at 5%: measured 5 s, halfway through the threshold: 10 + 0.5 * (5 - 10).
    EXPECT_DOUBLE_EQ (task->getPredictedExecutionTime (0.05).inSeconds(), 7.5);
    EXPECT_EQ (task->getProgressionString().get(), "Step 5    (Remaining time: 7 secs)");
}

// The same on the real clock: each step works a millisecond, and the task's progression is
// the share of its 1.5 s gone by.
TEST_F (TaskPredictionTest, ALinearTaskOnTheRealClockIsPredictedWithinTenPercent)
{
    LinearTask task (1.5, 10.0);
    task.update();
    int numChecked = 0;
    while (! task.isTerminated())
    {
        task.update();
        const double progression = task.getProgression().get();
        const double trueRemaining = 1.5 * (1.0 - progression);
        if (task.getExecutionTime().inSeconds() < 0.5 || trueRemaining < 0.2)
            continue;
        const double remaining = predictedRemaining (task);
        EXPECT_LE (std::abs (remaining - trueRemaining), 0.1 * trueRemaining) << "at " << progression;
        EXPECT_EQ (task.getProgressionString().get(), "Working" + remainingText (remaining));
        ++numChecked;
    }
    EXPECT_GT (numChecked, 10);
    EXPECT_EQ (task.getProgression().get(), 1.0);
}
