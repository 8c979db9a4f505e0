#include "AsyncTriggerManager.h"
#include "AsyncTrigger.h"
#include <algorithm>

namespace tov
{

void AsyncTriggerManager::addTrigger (AsyncTrigger* trigger)
{
    if (! finalized)
        receiving->push_back (trigger);
}

static bool removeAll (std::vector<AsyncTrigger*>& list, AsyncTrigger* trigger)
{
    const auto end = std::remove (list.begin(), list.end(), trigger);
    const bool found = end != list.end();
    list.erase (end, list.end());
    return found;
}

void AsyncTriggerManager::removeTrigger (AsyncTrigger* trigger)
{
    if (removeAll (pending, trigger))
        listChanged = true;
    removeAll (receivedDuringFlush, trigger);
}

// A callback that removes a trigger (by cancelling or destroying it) may have moved any entry:
// the walk starts again from the top. The triggers already flushed are no longer triggered,
// so meeting them again does nothing.
void AsyncTriggerManager::flushTriggers()
{
    receiving = &receivedDuringFlush;
    for (size_t i = 0; i < pending.size();)
    {
        listChanged = false;
        pending[i]->flush (true);
        i = listChanged ? 0 : i + 1;
    }
    pending.clear();
    receiving = &pending;
    std::swap (pending, receivedDuringFlush);
    receivedDuringFlush.clear();
}

void AsyncTriggerManager::finalize()
{
    flushTriggers();
    finalized = true;
}

} // namespace tov
