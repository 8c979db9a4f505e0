#pragma once

#include "Support/LogTestSupport.h"
#include <Tov/Standard/GroupTask.h>
#include <Tov/Standard/ProgressionStatistics.h>
#include <gtest/gtest.h>
#include <atomic>

// Tasks whose steps are told in advance, timed by ManualClock.
namespace tov::test
{

/** A task that adds a fixed amount to its progression at each step, which lasts stepMilliseconds
    of ManualClock, and ends once it reaches 1 (or never, with endless). Its step texts are
    "Step 1", "Step 2"... Everything it does is counted. */
class StepTask : public Task
{
public:
    TOV_DECLARE_CLASS (StepTask, Task)

    explicit StepTask (const juce::String& name = "Steps", double increment = 0.25, double stepMilliseconds = 100.0);
    /** Copies the settings and the counts. */
    StepTask (const StepTask& other);

    juce::RelativeTime getAprioriExecutionTime() override  { return juce::RelativeTime::seconds (aprioriSeconds); }
    bool isPausable() const override                       { return pausable; }

    double increment;
    double stepMilliseconds;
    double aprioriSeconds = 1.0;
    bool pausable = true;
    bool endless = false;
    /** Given, initialisation fails with it. */
    juce::String initializationError;
    /** Given, the step that ends the task puts it into the status as an error. */
    juce::String stepError;
    /** Replaces the progression at each step when not negative. */
    double forcedProgression = -1.0;

    std::atomic<int> numInitializations { 0 }, numSteps { 0 }, numCancels { 0 };

protected:
    bool initializeTask (juce::String& errorMessage) override;
    bool updateTask (double& progression, juce::String& progressionString) override;
    void cancelTask() override                             { ++numCancels; }
};

/** A StepTask that never ends, marked with the class attribute persistentTask. */
class PersistentStepTask : public StepTask
{
public:
    TOV_DECLARE_CLASS (PersistentStepTask, StepTask)

    explicit PersistentStepTask (const juce::String& name = "Watcher") : StepTask (name, 0.1) { endless = true; }
};

/** A task that works for a known wall-clock time: its progression is the share of that time
    gone since it was initialised, and each step does about a millisecond of work. */
class LinearTask : public Task
{
public:
    TOV_DECLARE_CLASS (LinearTask, Task)

    explicit LinearTask (double durationSeconds = 1.0, double aprioriSeconds = 10.0);

    juce::RelativeTime getAprioriExecutionTime() override  { return juce::RelativeTime::seconds (apriori); }
    /** Real seconds since initialisation. */
    double getTrueElapsedSeconds() const;

    double duration;
    double apriori;

protected:
    bool initializeTask (juce::String& errorMessage) override;
    bool updateTask (double& progression, juce::String& progressionString) override;

private:
    double startMilliseconds = 0.0;
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureTaskTestLibrary();

/** Task tests on ManualClock, which starts at 0 ms. */
class TaskFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureTaskTestLibrary();
        ManualClock::now = 0.0;
    }

    /** A new step task timed by ManualClock. */
    template <class T = StepTask, class... Arguments>
    static T* make (Arguments&&... arguments)
    {
        auto* task = new T (std::forward<Arguments> (arguments)...);
        task->setMillisecondClock (&ManualClock::get);
        return task;
    }

    /** "    (Remaining time: <description>)", as a step shows it. */
    static juce::String remainingText (double seconds)
    {
        return "    (Remaining time: " + juce::RelativeTime::seconds (seconds).getDescription ("0") + ")";
    }
};

} // namespace tov::test
