#include "EventCounter.h"

namespace tov
{

TOV_BEGIN_CLASS (EventCounter)
    TOV_VARIABLE (count, { "advanced", "true" })
    TOV_VARIABLE (countAtReset, { "advanced", "true" })
    TOV_VARIABLE (countSinceReset, { "displayInRedIfDifferentFromDefaultValue", "true" })
    TOV_VARIABLE (reset)
TOV_END_CLASS()

EventCounter::EventCounter (const EventCounter& other)
    : Object (other), count (other.count), countAtReset (other.countAtReset), countSinceReset (other.countSinceReset), reset (other.reset)
{
}

void EventCounter::set (int64_t newCount, bool notify)
{
    count.set (newCount, notify);
    // Without notification no callback runs, so the derived counts are brought along here.
    if (! notify)
        countChanged (false);
}

void EventCounter::resetNow (bool notify)
{
    countAtReset.set (count.get(), notify);
    countSinceReset.set (0, notify);
}

void EventCounter::variableChangedCallback (Object* variable, Object* changedObject)
{
    if (variable == &count)
        countChanged (true);
    else if (variable == &reset)
        resetNow();
}

void EventCounter::countChanged (bool notify)
{
    if (count.get() < countAtReset.get())
        countAtReset.set (count.get(), notify);
    countSinceReset.set (count.get() - countAtReset.get(), notify);
}

} // namespace tov
