#pragma once

#include <Tov/Standard/Task.h>
#include <functional>
#include <vector>

namespace tov
{

/** A job of a few named steps, each run by one update; its progression is the weight of the
    steps done. The text shows the step under way, then doneText. A failed step ends the task
    with the status "Failed"; its reasons went to the context. */
class StepsTask : public Task
{
public:
    struct Step
    {
        juce::String text;
        double weight;
        std::function<bool()> run;
    };

    StepsTask (const juce::String& name, std::vector<Step> steps, const juce::String& doneText);

protected:
    bool initializeTask (juce::String& errorMessage) override;
    bool updateTask (double& progression, juce::String& progressionString) override;

private:
    std::vector<Step> steps;
    juce::String doneText;
    size_t numDone = 0;
    double doneWeight = 0.0, totalWeight = 0.0;
};

/** The progress of a task as one line on standard error, rewritten in place: the percentage,
    then the task's text. Draws only when enabled, and then only on a terminal. */
class ProgressLine
{
public:
    explicit ProgressLine (bool enabled);

    /** Rewrites the line. */
    void show (const Task& task);
    /** Takes the line away, so that other text can be written where it stood. */
    void clear();
    /** Leaves the line as it stands and goes to the next one. */
    void finish();

    /** The line's text: "<percent>% <text>", the percentage right-aligned in three places. */
    static juce::String format (const Task& task);

private:
    bool drawing;
    bool shown = false;
};

/** Runs the task to its end, showing its progress after each update; true unless it failed. */
bool runTask (Task& task, ProgressLine& line);

} // namespace tov
