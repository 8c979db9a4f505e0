#include "Waiting.h"
#include <juce_core/juce_core.h>

namespace tov::test
{

bool waitUntil (const std::function<bool()>& condition, int timeOutMilliseconds)
{
    const auto deadline = juce::Time::getMillisecondCounter() + (juce::uint32) timeOutMilliseconds;
    while (! condition())
    {
        if ((int) (deadline - juce::Time::getMillisecondCounter()) <= 0)
            return false;
        juce::Thread::sleep (1);
    }
    return true;
}

} // namespace tov::test
