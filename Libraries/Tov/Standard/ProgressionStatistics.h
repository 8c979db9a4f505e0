#pragma once

#include "../Atomic/PositiveInteger.h"
#include "../Atomic/Seconds.h"
#include "../Atomic/String.h"
#include "MillisecondClock.h"

namespace tov
{

/** The progress of an operation that cannot measure itself, estimated from its last run.

    A run counts the changes of a status text and measures its time; the saved values of the
    last run that differed tell how far the present one is: the mean of its share of the
    changes and of the time, each at most 1. The estimate never falls.

        statistics.start (task.getProgressionString());
        ... the operation, which changes the text as it goes; the display asks getProgression ...
        if (statistics.finish())
            save (statistics);      // this run differed by more than a fifth from the last
*/
class ProgressionStatistics : public Object
{
public:
    TOV_DECLARE_CLASS (ProgressionStatistics, Object)

    ProgressionStatistics();

    /** Starts a run that counts the changes of status, from now. */
    void start (String& status);
    /** Ends the run and keeps its values; true when they differ by more than a fifth from the
        saved ones (or nothing was saved), and neither is 0: they are then worth saving. */
    bool finish();
    /** From 0 to 1; never less than an earlier answer of the run. */
    double getProgression() const;

    /** No status changes are saved. */
    bool isEmpty() const noexcept                         { return numStatusChanges.get() == 0; }
    void saveRun (uint64_t statusChanges, double seconds);

    const PositiveInteger& getNumRuns() const noexcept    { return numRuns; }
    const PositiveInteger& getNumStatusChanges() const noexcept  { return numStatusChanges; }
    const Seconds& getTotalTime() const noexcept          { return totalTime; }

    /** Replaces the clock of the runs. */
    void setMillisecondClock (MillisecondClock newClock) noexcept  { clock = newClock; }

private:
    /** The run in progress: a view on the status that counts its changes. */
    struct Run : public View
    {
        uint64_t numChanges = 0;
        double startTime = -1.0;
        double lastProgression = 0.0;

        void changedCallback (Object*, Object*) override  { ++numChanges; }
    };

    PositiveInteger numRuns;
    PositiveInteger numStatusChanges;
    Seconds totalTime;
    mutable Run run;
    MillisecondClock clock = systemMillisecondClock;

    double getElapsedSeconds() const                      { return (clock() - run.startTime) / 1000.0; }
};

} // namespace tov
