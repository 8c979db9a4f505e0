#include "TaskTestSupport.h"
#include <Tov/Core/Library.h>

namespace tov::test
{

TOV_BEGIN_CLASS (StepTask)
TOV_END_CLASS()

TOV_BEGIN_CLASS (PersistentStepTask, { "persistentTask", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (LinearTask)
TOV_END_CLASS()

StepTask::StepTask (const juce::String& name, double stepIncrement, double milliseconds)
    : Task (name), increment (stepIncrement), stepMilliseconds (milliseconds)
{
}

StepTask::StepTask (const StepTask& other)
    : Task (other), increment (other.increment), stepMilliseconds (other.stepMilliseconds), aprioriSeconds (other.aprioriSeconds),
      pausable (other.pausable), endless (other.endless), initializationError (other.initializationError),
      stepError (other.stepError), forcedProgression (other.forcedProgression),
      numInitializations (other.numInitializations.load()), numSteps (other.numSteps.load()), numCancels (other.numCancels.load())
{
}

bool StepTask::initializeTask (juce::String& errorMessage)
{
    ++numInitializations;
    errorMessage = initializationError;
    return initializationError.isEmpty();
}

bool StepTask::updateTask (double& progression, juce::String& progressionString)
{
    ManualClock::now += stepMilliseconds;
    progressionString = "Step " + juce::String (++numSteps);
    progression = forcedProgression >= 0.0 ? forcedProgression : progression + increment;
    if (endless || progression < 1.0)
        return true;
    if (stepError.isNotEmpty())
        getStatus().setError (stepError);
    return false;
}

//==============================================================================
LinearTask::LinearTask (double durationSeconds, double aprioriSeconds)
    : Task ("Linear"), duration (durationSeconds), apriori (aprioriSeconds)
{
}

double LinearTask::getTrueElapsedSeconds() const
{
    return (juce::Time::getMillisecondCounterHiRes() - startMilliseconds) / 1000.0;
}

bool LinearTask::initializeTask (juce::String&)
{
    startMilliseconds = juce::Time::getMillisecondCounterHiRes();
    return true;
}

// The work of a step is to let a millisecond of real time pass.
bool LinearTask::updateTask (double& progression, juce::String& progressionString)
{
    const double stepEnd = juce::Time::getMillisecondCounterHiRes() + 1.0;
    while (juce::Time::getMillisecondCounterHiRes() < stepEnd)
    {
    }
    progression = getTrueElapsedSeconds() / duration;
    progressionString = "Working";
    return progression < 1.0;
}

void ensureTaskTestLibrary()
{
    TestProgram::ensureTestLibraryTree();
    auto* root = Library::getRootLibrary();
    if (root->getLibraryByName ("TaskTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("TaskTests", {});
    library->addClass<StepTask>();
    library->addClass<PersistentStepTask>();
    library->addClass<LinearTask>();
    root->addLibrary (library);
}

} // namespace tov::test
