#include "Time.h"

namespace tov
{

TOV_BEGIN_CLASS (Time)
TOV_END_CLASS()

void Time::save (ObjectExporter& exporter) const
{
    exporter.writeInteger (value.toMilliseconds());
}

bool Time::load (ObjectImporter& importer)
{
    int64_t milliseconds = 0;
    if (! importer.readInteger (milliseconds))
        return false;
    set (juce::Time (milliseconds));
    return true;
}

juce::var Time::saveToJson (uint32_t) const
{
    return value.toISO8601 (true);
}

bool Time::loadFromJson (ExecutionContext&, const juce::var& json)
{
    set (juce::Time::fromISO8601 (json.toString()));
    return true;
}

} // namespace tov
