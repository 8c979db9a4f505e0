#pragma once

#include <juce_core/juce_core.h>
#include <atomic>

namespace tov
{

/** A descriptor that a thread waiting in poll() can watch beside its sockets, so that another
    thread can wake it at once: signal() from anywhere, clear() on the waiting thread, which
    then looks at what it was woken for.

    Signals that come before the waiting thread clears write nothing more: a sender that
    queues many blocks wakes the connection's thread with one write, not one per block.
*/
class WakeUpEvent
{
public:
    WakeUpEvent();
    ~WakeUpEvent();

    void signal() noexcept;
    /** Takes back every signal so far. */
    void clear() noexcept;
    int getHandle() const noexcept          { return handle; }

private:
    int handle;
    std::atomic<bool> pending { false };

    JUCE_DECLARE_NON_COPYABLE (WakeUpEvent)
};

} // namespace tov
