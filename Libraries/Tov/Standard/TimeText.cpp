#include "TimeText.h"

namespace tov
{

juce::String TimeText::toString (juce::Time time)
{
    if (time.toMilliseconds() == 0)
        return "N/A";
    return juce::String::formatted ("%d/%02d/%02d %02d:%02d:%02d",
                                    time.getYear(), time.getMonth() + 1, time.getDayOfMonth(),
                                    time.getHours(), time.getMinutes(), time.getSeconds());
}

juce::String TimeText::toStringWithoutDay (juce::Time time)
{
    if (time.toMilliseconds() == 0)
        return "N/A";
    return juce::String::formatted ("%02d:%02d:%02d", time.getHours(), time.getMinutes(), time.getSeconds());
}

juce::String TimeText::toFrenchStyleString (juce::Time time)
{
    return juce::String::formatted ("%02u/%02u/%02u", (unsigned) time.getDayOfMonth(), (unsigned) (time.getMonth() + 1), (unsigned) time.getYear());
}

juce::String TimeText::toFileNameString (juce::Time time)
{
    return juce::String (time.getYear()) + "-" + juce::String (time.getMonth() + 1) + "-" + juce::String (time.getDayOfMonth())
         + "_" + juce::String (time.getHours()) + "-" + juce::String (time.getMinutes()) + "-" + juce::String (time.getSeconds());
}

} // namespace tov
