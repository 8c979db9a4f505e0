#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

/** A descriptor that a thread waiting in poll() can watch beside its sockets, so that another
    thread can wake it at once: signal() from anywhere, clear() on the waiting thread. */
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

    JUCE_DECLARE_NON_COPYABLE (WakeUpEvent)
};

} // namespace tov
