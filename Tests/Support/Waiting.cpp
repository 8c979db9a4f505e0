#include "Waiting.h"
#include <Tov/Standard/Deadline.h>

namespace tov::test
{

bool waitUntil (const std::function<bool()>& condition, int timeOutMilliseconds)
{
    const Deadline deadline (timeOutMilliseconds);
    while (! condition())
    {
        if (deadline.hasPassed())
            return false;
        juce::Thread::sleep (1);
    }
    return true;
}

} // namespace tov::test
