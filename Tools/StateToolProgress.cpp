#include "StateToolProgress.h"
#include <iostream>
#include <unistd.h>

namespace tov
{

StepsTask::StepsTask (const juce::String& taskName, std::vector<Step> taskSteps, const juce::String& finalText)
    : Task (taskName), steps (std::move (taskSteps)), doneText (finalText)
{
    for (auto& step : steps)
        totalWeight += step.weight;
}

// The line shows the first step while it runs, not the initialisation that went before.
bool StepsTask::initializeTask (juce::String&)
{
    getProgressionString().set (steps.empty() ? doneText : steps.front().text);
    return true;
}

bool StepsTask::updateTask (double& progression, juce::String& progressionString)
{
    if (numDone < steps.size())
    {
        auto& step = steps[numDone];
        if (! step.run())
        {
            getStatus().setError ("Failed");
            progressionString = "Failed: " + step.text;
            return false;
        }
        doneWeight += step.weight;
        ++numDone;
    }
    progression = totalWeight > 0.0 ? doneWeight / totalWeight : 1.0;
    progressionString = numDone < steps.size() ? steps[numDone].text : doneText;
    return numDone < steps.size();
}

//==============================================================================
ProgressLine::ProgressLine (bool enabled)
    : drawing (enabled && ::isatty (STDERR_FILENO) == 1)
{
}

juce::String ProgressLine::format (const Task& task)
{
    const int percent = juce::roundToInt (task.getProgression().get() * 100.0);
    return juce::String (percent).paddedLeft (' ', 3) + "% " + task.getProgressionString().get();
}

// "\r" goes back to the start of the line, ESC [ K erases what an older, longer text left.
void ProgressLine::show (const Task& task)
{
    if (! drawing)
        return;
    std::cerr << "\r" << format (task).toStdString() << "\x1b[K" << std::flush;
    shown = true;
}

void ProgressLine::clear()
{
    if (shown)
        std::cerr << "\r\x1b[K" << std::flush;
    shown = false;
}

void ProgressLine::finish()
{
    if (shown)
        std::cerr << "\n" << std::flush;
    shown = false;
}

bool runTask (Task& task, ProgressLine& line)
{
    while (! task.isTerminated())
    {
        task.update();
        line.show (task);
    }
    const bool succeeded = ! task.getStatus().isError();
    if (succeeded)
        line.finish();
    else
        line.clear();
    return succeeded;
}

} // namespace tov
