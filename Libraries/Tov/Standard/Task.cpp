#include "Task.h"
#include "Service.h"

namespace tov
{

TOV_BEGIN_CLASS (Task)
    TOV_VARIABLE (paused)
    TOV_VARIABLE (progression)
    TOV_VARIABLE (progressionString)
    TOV_VARIABLE (status)
    TOV_VARIABLE (state)
    TOV_VARIABLE (relatedFile)
    TOV_VARIABLE (terminatedEvent)
TOV_END_CLASS()

static void* getCallingThreadId() noexcept
{
    return (void*) juce::Thread::getCurrentThreadId();
}

Task::Task (const juce::String& taskName)
    : runningThreadId (Service::getInvalidThreadId())
{
    parentVariables();
    name.set (taskName, false);
}

Task::Task (const Task& other)
    : NameableObject (other),
      runningThreadId (other.runningThreadId.load()),
      executionTime (other.executionTime),
      lastUpdateTime (other.lastUpdateTime),
      clock (other.clock)
{
    parentVariables();
    other.copyTo (*this);
    canceledFlag.set (other.canceledFlag.get(), false);
}

void Task::parentVariables()
{
    for (Object* variable : std::initializer_list<Object*> { &name, &canceledFlag, &paused, &progression, &progressionString,
                                                             &status, &state, &relatedFile, &terminatedEvent })
        variable->setParent (this);
}

//==============================================================================
void Task::setRunningThreadIdToCurrent() noexcept
{
    runningThreadId = getCallingThreadId();
}

bool Task::isRunningInCurrentThread() const noexcept
{
    const void* id = runningThreadId.load();
    return id != Service::getInvalidThreadId() && id == getCallingThreadId();
}

bool Task::isPersistentTask() const
{
    return getClass()->getBooleanAttribute ("persistentTask", false);
}

void Task::cancel()
{
    const bool ownedByThisThread = runningThreadId.load() == Service::getInvalidThreadId() || isRunningInCurrentThread();
    if (! ownedByThisThread)
        cancelPending = true;
    else if (! isTerminated())
        state.setState (TaskStateEnum::canceled, true);
}

// The state belongs to the running thread: a cancel from elsewhere becomes a change of the
// state only here, and its cancellation runs once, in the canceled branch of update.
void Task::applyPendingCancel()
{
    if (! cancelPending.exchange (false) || isTerminated())
        return;
    applyingPendingCancel = true;
    state.setState (TaskStateEnum::canceled, true);
    applyingPendingCancel = false;
}

//==============================================================================
void Task::update()
{
    if (runningThreadId.load() == Service::getInvalidThreadId())
        setRunningThreadIdToCurrent();
    applyPendingCancel();
    if (paused.get())
        return;

    switch (state.getState())
    {
        case TaskStateEnum::uninitialized:  initialize(); break;
        case TaskStateEnum::canceled:       cancelRequested(); terminate(); break;
        case TaskStateEnum::terminated:     break;
        case TaskStateEnum::running:        runStep(); break;
    }
}

void Task::initialize()
{
    progressionString.set ("Task initializing, please wait...");
    juce::String error;
    if (initializeTask (error))
    {
        state.setState (TaskStateEnum::running, true);
        return;
    }
    status.setError (error);
    state.setState (TaskStateEnum::terminated, true);
    progressionString.set ("Error: " + error);
    terminatedEvent.signal();
}

void Task::runStep()
{
    if (lastUpdateTime == -1.0)
        lastUpdateTime = clock();

    double newProgression = progression.get();
    juce::String text = progressionString.get();
    const bool goesOn = updateTask (newProgression, text);
    newProgression = juce::jlimit (0.0, 1.0, newProgression);

    // Time spent paused or between rare updates does not count: one step adds at most a second.
    const double now = clock();
    executionTime += juce::RelativeTime::seconds (juce::jmin ((now - lastUpdateTime) / 1000.0, 1.0));
    lastUpdateTime = now;

    progression.set (newProgression);
    progressionString.set (text + getRemainingTimeText (newProgression));
    if (! goesOn)
        terminate();
}

juce::String Task::getRemainingTimeText (double currentProgression)
{
    if (currentProgression <= 0.0 || currentProgression >= 1.0 || isPersistentTask())
        return {};
    const double remaining = getPredictedExecutionTime (currentProgression).inSeconds() * (1.0 - currentProgression);
    return "    (Remaining time: " + juce::RelativeTime::seconds (remaining).getDescription ("0") + ")";
}

void Task::terminate()
{
    state.setState (TaskStateEnum::terminated, true);
    terminatedEvent.signal();
}

void Task::cancelRequested()
{
    cancelTask();
    progression.set (1.0);
    progressionString.set ("Canceled");
    canceledFlag.set (true);
}

void Task::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (variable == &state && state.is (TaskStateEnum::canceled) && ! applyingPendingCancel && isRunningInCurrentThread())
        cancelRequested();
    NameableObject::variableChangedCallback (variable, changedObject);
}

//==============================================================================
// During the first half second (or 1% of the a-priori time, if longer) the prediction slides
// from the a-priori time to the measured one, so that a first noisy progress value does not
// show a wild estimate.
juce::RelativeTime Task::getPredictedExecutionTime (double currentProgression)
{
    const double apriori = getAprioriExecutionTime().inSeconds();
    if (currentProgression == 0.0)
        return juce::RelativeTime::seconds (apriori);

    const double elapsed = executionTime.inSeconds();
    const double estimate = elapsed / currentProgression;
    const double threshold = juce::jmax (0.5, apriori * 0.01);
    if (elapsed >= threshold)
        return juce::RelativeTime::seconds (estimate);
    return juce::RelativeTime::seconds (apriori + (elapsed / threshold) * (estimate - apriori));
}

} // namespace tov
