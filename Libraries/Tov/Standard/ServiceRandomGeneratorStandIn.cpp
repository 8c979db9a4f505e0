#include "ServiceRandomGeneratorStandIn.h"
#include <juce_core/juce_core.h>

namespace tov
{

namespace
{
struct ThreadGenerator
{
    uint64_t state = (uint64_t) juce::Time::getHighResolutionTicks() & 0xffffffffffffull;

    uint32_t sampleInt() noexcept
    {
        state = (state * 0x5deece66dull + 11) & 0xffffffffffffull;
        return (uint32_t) (state >> 16);
    }
};

ThreadGenerator& getThreadGenerator()
{
    thread_local ThreadGenerator generator;
    return generator;
}
} // namespace

uint64_t ServiceRandomGeneratorStandIn::sampleInt64()
{
    auto& generator = getThreadGenerator();
    const uint64_t high = generator.sampleInt();
    return (high << 32) | generator.sampleInt();
}

void ServiceRandomGeneratorStandIn::setSeed (int64_t seed)
{
    getThreadGenerator().state = (uint64_t) seed;
}

} // namespace tov
