#pragma once

#include "../Core/Object.h"

namespace tov
{

/** A change notification that waits for the end of its service's pass.

    A trigger may be fired any number of times during a pass of the service whose thread
    fires it; its changed() runs once, when that service flushes its triggers. Firing,
    cancelling and flushing all happen on that thread: the trigger does not remember its
    service, it asks for the current one each time. A trigger fired on a thread without
    a service stays triggered and is never flushed.
*/
class AsyncTrigger : public Object
{
public:
    TOV_DECLARE_CLASS (AsyncTrigger, Object)

    AsyncTrigger() = default;
    /** Leaves the current service's list, while the program still runs. */
    ~AsyncTrigger() override;

    /** Marks the trigger and, the first time, lists it with the current service. */
    void trig();
    /** Cancels a notification that has not been flushed yet. */
    void untrig();
    /** Clears the mark of a triggered trigger and, with notify, calls changed(). */
    void flush (bool notify);
    bool isTriggered() const noexcept                   { return triggered; }

    /** A notification is no value: nothing is saved. */
    void save (ObjectExporter&) const override          {}
    /** Whatever the state, loading counts as a change. */
    bool load (ObjectImporter&) override                { changed(); return true; }
    bool loadFromJson (ExecutionContext&, const juce::var&) override  { changed(); return true; }

    /** The words that end the reports of calls on a deleted trigger. */
    static const char* const supportContact;

private:
    bool triggered = false;

    bool reportIfDeleted (const char* operation) const;
};

} // namespace tov
