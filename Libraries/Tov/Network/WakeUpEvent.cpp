#include "WakeUpEvent.h"
#include <sys/eventfd.h>
#include <unistd.h>

namespace tov
{

WakeUpEvent::WakeUpEvent()
    : handle (eventfd (0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    jassert (handle >= 0);
}

WakeUpEvent::~WakeUpEvent()
{
    if (handle >= 0)
        close (handle);
}

void WakeUpEvent::signal() noexcept
{
    if (pending.exchange (true))
        return;
    const uint64_t one = 1;
    [[maybe_unused]] auto written = write (handle, &one, sizeof (one));
}

void WakeUpEvent::clear() noexcept
{
    uint64_t count = 0;
    [[maybe_unused]] auto read = ::read (handle, &count, sizeof (count));
    // Only now: a signal between the read and this store wrote nothing, and the caller, which
    // looks at its queues after clearing, finds what that signal announced.
    pending = false;
}

} // namespace tov
