#include "GroupTask.h"

namespace tov
{

TOV_BEGIN_CLASS (GroupTask)
    TOV_VARIABLE (tasks)
    TOV_VARIABLE (pausable)
    TOV_VARIABLE (cancelable)
    TOV_VARIABLE (sequential)
TOV_END_CLASS()

GroupTask::GroupTask (bool isGroupPausable, bool isGroupCancelable)
    : Task ("Tasks (group)")
{
    for (Object* variable : std::initializer_list<Object*> { &tasks, &pausable, &cancelable, &sequential })
        variable->setParent (this);
    pausable.set (isGroupPausable, false);
    cancelable.set (isGroupCancelable, false);
}

void GroupTask::addTask (Task* task)
{
    tasks.append (task);
}

void GroupTask::clearTasks()
{
    tasks.clear();
}

void GroupTask::removeTerminatedTasks (bool notify)
{
    const size_t before = tasks.size();
    for (size_t i = tasks.size(); i-- > 0;)
        if (tasks[i]->isTerminated())
            tasks.remove (i, false);
    if (notify && tasks.size() != before)
        tasks.changed();
}

bool GroupTask::isAnyTaskCurrentlyRunning() const
{
    for (auto* task : tasks)
        if (task->getState().is (TaskStateEnum::running) && ! task->getPaused().get())
            return true;
    return false;
}

bool GroupTask::isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const
{
    if (! Task::isVariableEditable (variable, declarator))
        return false;
    return variable != &name || findAncestorOfClass (&Task::getStaticClass()) != nullptr;
}

//==============================================================================
bool GroupTask::updateTask (double& groupProgression, juce::String& text)
{
    if (tasks.size() == 0)
    {
        groupProgression = 0.0;
        text = {};
        return ! sequential.get();
    }

    uint64_t numTerminated = 0;
    double done = 0.0, total = 0.0;
    account (numTerminated, done, total);

    groupProgression = total > 0.0 ? done / total : 1.0;
    const auto numTasks = tasks.size();
    text = juce::String (numTerminated) + " / " + juce::String (numTasks) + (numTasks == 1 ? " task" : " tasks");
    return updateOneChild();
}

// The group's caller runs the children, so each becomes the running thread's.
void GroupTask::account (uint64_t& numTerminated, double& done, double& total)
{
    for (size_t i = 0; i < tasks.size();)
    {
        Task* task = tasks[i];
        task->setRunningThreadIdToCurrent();
        if (task->isPersistentTask())
        {
            ++i;
            continue;
        }
        const double executed = task->getExecutionTime().inSeconds();
        done += executed;
        if (task->isTerminated())
        {
            ++numTerminated;
            total += executed;
        }
        else
        {
            total += task->getPredictedExecutionTime (task->getProgression().get()).inSeconds();
        }
        if (task->isCanceled())
            tasks.remove (i, true);
        else
            ++i;
    }
}

// One child per pass, also in a group that is not sequential. A sequential group ends at a
// paused child, as it stands: pause a group as a whole, not a child of it.
bool GroupTask::updateOneChild()
{
    for (size_t i = 0; i < tasks.size(); ++i)
    {
        Task* task = tasks[i];
        const bool paused = task->getPaused().get();
        if (! paused && ! task->isTerminated())
        {
            task->update();
            return true;
        }
        if (! paused && sequential.get() && task->getStatus().isError())
        {
            getStatus() = task->getStatus();
            getStatus().changed();
            cancelTasksAfter (i);
            return false;
        }
        if (paused && sequential.get())
            break;
    }
    return ! sequential.get();
}

void GroupTask::cancelTasksAfter (size_t index)
{
    for (size_t i = index + 1; i < tasks.size(); ++i)
        tasks[i]->getState().setState (TaskStateEnum::canceled, true);
}

void GroupTask::cancelTask()
{
    for (auto* task : tasks)
        task->getState().setState (TaskStateEnum::canceled, true);
}

void GroupTask::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (variable == &getPaused())
        for (auto* task : tasks)
            task->getPaused().set (getPaused().get());
    Task::variableChangedCallback (variable, changedObject);
}

} // namespace tov
