#include <Tov/Network/WakeUpEvent.h>
#include <gtest/gtest.h>
#include <poll.h>

using namespace tov;

// The descriptor that wakes a thread waiting in poll(): many signals before a clear cost one
// write, and a clear makes the next signal write again.
namespace
{
bool isReadable (const WakeUpEvent& event)
{
    pollfd descriptor { event.getHandle(), POLLIN, 0 };
    return poll (&descriptor, 1, 0) == 1 && (descriptor.revents & POLLIN) != 0;
}

uint64_t countWaiting (const WakeUpEvent& event)
{
    uint64_t count = 0;
    return ::read (event.getHandle(), &count, sizeof (count)) == sizeof (count) ? count : 0;
}
} // namespace

TEST (WakeUpEventTest, ANewEventIsQuiet)
{
    WakeUpEvent event;
    EXPECT_FALSE (isReadable (event));
}

TEST (WakeUpEventTest, SignalsBeforeAClearWriteOnce)
{
    WakeUpEvent event;
    for (int i = 0; i < 5; ++i)
        event.signal();
    EXPECT_EQ (countWaiting (event), 1u);
}

TEST (WakeUpEventTest, AClearTakesTheSignalAndTheNextSignalWakesAgain)
{
    WakeUpEvent event;
    event.signal();
    event.clear();
    EXPECT_FALSE (isReadable (event));
    event.signal();
    EXPECT_TRUE (isReadable (event));
}
