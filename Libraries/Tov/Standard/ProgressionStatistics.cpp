#include "ProgressionStatistics.h"
#include <limits>

namespace tov
{

TOV_BEGIN_CLASS (ProgressionStatistics)
    TOV_VARIABLE (numRuns)
    TOV_VARIABLE (numStatusChanges)
    TOV_VARIABLE (totalTime)
TOV_END_CLASS()

/** A measure of this run against the saved one; without a saved value, the largest double. */
static double ratioToSaved (double value, double saved)
{
    return saved == 0.0 ? std::numeric_limits<double>::max() : value / saved;
}

ProgressionStatistics::ProgressionStatistics()
{
    for (Object* variable : std::initializer_list<Object*> { &numRuns, &numStatusChanges, &totalTime })
        variable->setParent (this);
}

void ProgressionStatistics::start (String& status)
{
    run.detachAllObjects();
    run.attachObject (&status);
    run.startTime = clock();
    run.numChanges = 0;
    run.lastProgression = 0.0;
}

bool ProgressionStatistics::finish()
{
    numRuns.increment();
    run.detachAllObjects();

    const double changes = (double) run.numChanges;
    const double changesRatio = ratioToSaved (changes, (double) numStatusChanges.get());
    numStatusChanges.set ((int64_t) run.numChanges);

    const double elapsed = getElapsedSeconds();
    const double timeRatio = ratioToSaved (elapsed, totalTime.get());
    totalTime.set (elapsed);

    if (changes == 0.0 || elapsed == 0.0)
        return false;
    return juce::jmin (changesRatio, timeRatio) < 0.8 || juce::jmax (changesRatio, timeRatio) > 1.2;
}

double ProgressionStatistics::getProgression() const
{
    const double elapsed = getElapsedSeconds();
    if (elapsed < 0.000001)
        return 0.0;
    const double changesShare = juce::jmin (ratioToSaved ((double) run.numChanges, (double) numStatusChanges.get()), 1.0);
    const double timeShare = juce::jmin (ratioToSaved (elapsed, totalTime.get()), 1.0);
    const double progression = (changesShare + timeShare) * 0.5;
    if (progression > run.lastProgression)
        run.lastProgression = progression;
    return run.lastProgression;
}

void ProgressionStatistics::saveRun (uint64_t statusChanges, double seconds)
{
    numStatusChanges.set ((int64_t) statusChanges);
    totalTime.set (seconds);
}

} // namespace tov
