#pragma once

#include <cstddef>
#include <vector>

namespace tov
{

class AsyncTrigger;

/** The triggers a service's thread fired since its last flush.

    A flush calls each trigger's changed() once. Triggers fired by those callbacks go to a
    second list and wait for the next flush, so that a flush always ends. The manager has no
    lock: it belongs to its service's thread.
*/
class AsyncTriggerManager
{
public:
    AsyncTriggerManager() = default;

    /** Lists the trigger for the next flush; ignored once finalized. */
    void addTrigger (AsyncTrigger* trigger);
    /** Takes out every occurrence of the trigger, whichever list holds it. */
    void removeTrigger (AsyncTrigger* trigger);
    /** Notifies every listed trigger once, in the order of firing. */
    void flushTriggers();
    /** A last flush; from then on nothing is listed any more. */
    void finalize();

    bool isFinalized() const noexcept               { return finalized; }
    /** How many entries wait for the next flush, duplicates included. */
    size_t getNumPendingTriggers() const noexcept   { return pending.size() + receivedDuringFlush.size(); }

private:
    std::vector<AsyncTrigger*> pending;
    std::vector<AsyncTrigger*> receivedDuringFlush;
    std::vector<AsyncTrigger*>* receiving = &pending;
    bool listChanged = false;
    bool finalized = false;

    AsyncTriggerManager (const AsyncTriggerManager&) = delete;
    AsyncTriggerManager& operator= (const AsyncTriggerManager&) = delete;
};

} // namespace tov
