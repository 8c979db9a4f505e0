#include "StdDevEvent.h"

namespace tov
{

StdDevEvent::StdDevEvent (const juce::String& name, const juce::String& label)
    : name (name), label (label)
{
}

bool StdDevEvent::update (double now, double frameTime, uint64_t frameCount)
{
    ++numSamples;
    if (frameTime >= 0.0)
    {
        const double offset = now - frameTime;
        offsets.push (offset);
        squaredOffsets.push (offset * offset);
    }
    if (period > 1 && frameCount % period != 0)
        return false;
    lastTime = now;
    return true;
}

juce::String StdDevEvent::getReportLine (const juce::String& threadName) const
{
    return threadName + " ======> " + label + " MEAN: " + juce::String (offsets.getMean())
         + " +/- " + juce::String (offsets.getStandardDeviation());
}

} // namespace tov
