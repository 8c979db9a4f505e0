#pragma once

#include "../Atomic/PositiveInteger.h"
#include "../Atomic/Trigger.h"

namespace tov
{

/** Counts events, and how many came since the user last pressed reset.

    The count since reset follows from the two others: count - countAtReset. A count set
    below the count at reset (a counter that started again) takes the count at reset down
    with it, so the count since reset never goes negative.
*/
class EventCounter : public Object
{
public:
    TOV_DECLARE_CLASS (EventCounter, Object)

    EventCounter() = default;
    EventCounter (const EventCounter& other);
    EventCounter& operator= (const EventCounter& other)   { other.copyTo (*this); return *this; }

    int64_t get() const noexcept                          { return count.get(); }
    /** Sets the count; the count since reset follows, also without notification. */
    void set (int64_t newCount, bool notify = true);
    void increment (int64_t amount = 1, bool notify = true)  { set (count.get() + amount, notify); }

    /** The count at reset becomes the count, and the count since reset 0. */
    void resetNow (bool notify = true);
    /** The trigger that resets the counter when it fires. */
    Trigger& getReset() noexcept                          { return reset; }
    int64_t getCountAtReset() const noexcept              { return countAtReset.get(); }
    int64_t getCountSinceReset() const noexcept           { return countSinceReset.get(); }

    void variableChangedCallback (Object* variable, Object* changedObject) override;

private:
    PositiveInteger count;
    PositiveInteger countAtReset;
    PositiveInteger countSinceReset;
    Trigger reset;

    void countChanged (bool notify);
};

} // namespace tov
