#pragma once

#include "../Atomic/Boolean.h"
#include "../Atomic/NameableObject.h"
#include "../Atomic/Percentage.h"
#include "../Message/Event.h"
#include "MillisecondClock.h"
#include "NativeFile.h"
#include "SuccessStatus.h"
#include "TaskState.h"
#include <atomic>

namespace tov
{

/** A long job cut into small steps, with progress, a status line, cancellation, pause and a
    prediction of its remaining time.

    Nothing here starts a thread: one thread at a time calls update from its loop until
    isTerminated, and each call runs at most one step (updateTask of the subclass). That
    thread owns the task and its variables. Only cancel may come from another thread: it is
    handed over, and the state becomes canceled at the next update, on the owning thread.

    The class attribute "persistentTask" (true) marks a task without end: no remaining time
    is shown for it, and a group leaves it out of its accounting.
*/
class Task : public NameableObject
{
public:
    TOV_DECLARE_CLASS (Task, NameableObject)

    explicit Task (const juce::String& name);
    /** Copies the variables, and the running thread, execution time and last update time. */
    Task (const Task& other);

    /** Whether users may pause it. */
    virtual bool isPausable() const                      { return true; }
    /** How long the whole job is expected to take before anything was measured. */
    virtual juce::RelativeTime getAprioriExecutionTime() { return juce::RelativeTime::seconds (1.0); }

    //==============================================================================
    /** Runs one step: initialisation, a step of the job, or the end of a cancellation. Does
        nothing while paused or once terminated. */
    void update();
    /** Sets the state to canceled: at once on the running thread (or before any thread ran the
        task), else at that thread's next update. A terminated task stays terminated. */
    void cancel();

    void setRunningThreadIdToCurrent() noexcept;
    /** False while no thread ran the task. */
    bool isRunningInCurrentThread() const noexcept;
    /** True once the cancellation has run. */
    bool isCanceled() const noexcept                    { return canceledFlag.get(); }
    bool isTerminated() const noexcept                  { return state.is (TaskStateEnum::terminated); }
    /** The class attribute "persistentTask". */
    bool isPersistentTask() const;

    /** The time the whole job takes, from the a-priori time and the execution time so far. */
    juce::RelativeTime getPredictedExecutionTime (double progression);
    /** The time the job has spent in its steps; an update adds at most one second. */
    juce::RelativeTime getExecutionTime() const noexcept  { return executionTime; }

    /** Replaces the clock of execution times. */
    void setMillisecondClock (MillisecondClock newClock) noexcept  { clock = newClock; }

    //==============================================================================
    Boolean& getPaused() noexcept                        { return paused; }
    const Boolean& getPaused() const noexcept            { return paused; }
    Percentage& getProgression() noexcept                { return progression; }
    const Percentage& getProgression() const noexcept    { return progression; }
    String& getProgressionString() noexcept              { return progressionString; }
    const String& getProgressionString() const noexcept  { return progressionString; }
    SuccessStatus& getStatus() noexcept                  { return status; }
    const SuccessStatus& getStatus() const noexcept      { return status; }
    TaskState& getState() noexcept                       { return state; }
    const TaskState& getState() const noexcept           { return state; }
    NativeFile& getRelatedFile() noexcept                { return relatedFile; }
    const NativeFile& getRelatedFile() const noexcept    { return relatedFile; }
    Event& getTerminatedEvent() noexcept                 { return terminatedEvent; }
    const Event& getTerminatedEvent() const noexcept     { return terminatedEvent; }

protected:
    /** Prepares the job; false with the reason in errorMessage ends the task in error. */
    virtual bool initializeTask (juce::String& errorMessage)  { return true; }
    /** One step: changes the progression (0 to 1) and the text, and answers false when the job
        has ended. A subclass puts its own errors into the status before it answers false. */
    virtual bool updateTask (double& progression, juce::String& progressionString) = 0;
    /** Stops the job. May run twice for a cancel on the running thread: once when the state
        changes, once at the next update. */
    virtual void cancelTask()                            {}

    /** A change of the state to canceled on the running thread runs the cancellation at once. */
    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    Boolean canceledFlag;
    Boolean paused;
    Percentage progression;
    String progressionString;
    SuccessStatus status;
    TaskState state;
    NativeFile relatedFile;
    Event terminatedEvent;

    std::atomic<void*> runningThreadId;
    juce::RelativeTime executionTime;
    double lastUpdateTime = -1.0;
    MillisecondClock clock = systemMillisecondClock;
    /** A cancel from another thread, waiting for the running thread. */
    std::atomic<bool> cancelPending { false };
    bool applyingPendingCancel = false;

    void parentVariables();
    void applyPendingCancel();
    void initialize();
    void runStep();
    void cancelRequested();
    void terminate();
    juce::String getRemainingTimeText (double progression);
};

} // namespace tov
