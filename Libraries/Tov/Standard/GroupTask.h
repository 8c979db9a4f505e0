#pragma once

#include "../Container/OwnedVector.h"
#include "Task.h"

namespace tov
{

/** A task made of tasks, which it owns and runs: each pass of the group updates one child.

    A sequential group ends when all its children have ended, and at the first child that
    failed, whose status it takes; the others wait, running, for new children. Its progress
    is the execution time of its children over their predicted total; persistent children
    are left out. Pause the group as a whole: its pause goes to every child.
*/
class GroupTask : public Task
{
public:
    TOV_DECLARE_CLASS (GroupTask, Task)

    GroupTask() : GroupTask (true, true) {}
    GroupTask (bool pausable, bool cancelable);

    /** Takes ownership. */
    void addTask (Task* task);
    void clearTasks();
    uint64_t getNumTasks() const noexcept                { return tasks.size(); }
    Task* getTask (uint64_t index) const                 { return tasks.get ((size_t) index); }
    OwnedVector<Task>& getTasks() noexcept               { return tasks; }
    const OwnedVector<Task>& getTasks() const noexcept   { return tasks; }

    /** Deletes every terminated child; with notify, tasks signals a change when any went. */
    void removeTerminatedTasks (bool notify);
    /** A child is running and not paused. */
    bool isAnyTaskCurrentlyRunning() const;

    bool isCancelable() const noexcept                   { return cancelable.get(); }
    bool isPausable() const override                     { return pausable.get(); }
    Boolean& getSequential() noexcept                    { return sequential; }
    const Boolean& getSequential() const noexcept        { return sequential; }

    /** The name of a group is editable only below another task. */
    bool isVariableEditable (const Object* variable, VariableDependenciesDeclarator& declarator) const override;

protected:
    bool updateTask (double& progression, juce::String& progressionString) override;
    void cancelTask() override;
    /** A change of paused goes to every child. */
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    OwnedVector<Task> tasks;
    Boolean pausable;
    Boolean cancelable;
    Boolean sequential;

    /** Counts the terminated children and adds up the times; deletes the canceled ones. */
    void account (uint64_t& numTerminated, double& done, double& total);
    /** Updates the first child that can go on; the group's answer for the pass. */
    bool updateOneChild();
    void cancelTasksAfter (size_t index);
};

} // namespace tov
