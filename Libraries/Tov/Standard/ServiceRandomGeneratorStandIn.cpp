#include "ServiceRandomGeneratorStandIn.h"
#include <juce_core/juce_core.h>

namespace tov
{

RandomGenerator& ServiceRandomGeneratorStandIn::getRandomGenerator()
{
    thread_local RandomGenerator generator (juce::Time::getHighResolutionTicks());
    return generator;
}

} // namespace tov
