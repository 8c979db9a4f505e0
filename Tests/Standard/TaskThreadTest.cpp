#include "TaskTestSupport.h"
#include "Support/Waiting.h"
#include <memory>
#include <thread>

using namespace tov;
using namespace tov::test;

namespace
{
class TaskThreadTest : public TaskFixture
{
};
} // namespace

TEST_F (TaskThreadTest, ACancelFromAnotherThreadWaitsForTheNextUpdateOnTheRunningThread)
{
    std::unique_ptr<StepTask> task (make());
    task->update();
    task->update();
    std::thread other ([&task] { task->cancel(); });
    other.join();
    EXPECT_TRUE (task->getState().is (TaskStateEnum::running));
    EXPECT_EQ (task->numCancels, 0);
    EXPECT_FALSE (task->isCanceled());

    // Once, in the canceled branch: the handed-over change does not run it a second time.
    task->update();
    EXPECT_EQ (task->numCancels, 1);
    EXPECT_TRUE (task->isTerminated());
    EXPECT_EQ (task->numSteps, 1);
    EXPECT_EQ (task->getProgressionString().get(), "Canceled");
    EXPECT_EQ (task->getProgression().get(), 1.0);
}

TEST_F (TaskThreadTest, AWorkerRunsAnEndlessTaskUntilAnotherThreadCancelsIt)
{
    std::unique_ptr<StepTask> task (make());
    task->endless = true;
    task->increment = 0.0;
    std::thread worker ([&task]
    {
        while (! task->isTerminated())
            task->update();
    });
    const bool stepped = waitUntil ([&task] { return task->numSteps >= 3; });
    task->cancel();
    worker.join();
    EXPECT_TRUE (stepped);
    EXPECT_FALSE (task->isRunningInCurrentThread());
    EXPECT_TRUE (task->isTerminated());
    EXPECT_TRUE (task->isCanceled());
    EXPECT_EQ (task->numCancels, 1);
    EXPECT_EQ (task->getProgressionString().get(), "Canceled");
}

TEST_F (TaskThreadTest, AGroupOnAWorkerRunsItsChildrenThereAndEndsAfterTheLast)
{
    std::unique_ptr<GroupTask> group (make<GroupTask>());
    group->getSequential().set (true);
    std::vector<StepTask*> children;
    for (auto name : { "a", "b", "c" })
    {
        children.push_back (make (name, 0.5));
        group->addTask (children.back());
    }
    std::thread worker ([&group]
    {
        while (! group->isTerminated())
            group->update();
    });
    worker.join();
    for (auto* child : children)
    {
        EXPECT_TRUE (child->isTerminated());
        EXPECT_EQ (child->numSteps, 2);
        EXPECT_FALSE (child->isRunningInCurrentThread());
    }
    EXPECT_EQ (group->getProgressionString().get(), "3 / 3 tasks");
    EXPECT_TRUE (group->getStatus().isSuccess());
}
