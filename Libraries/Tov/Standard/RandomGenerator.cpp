#include "RandomGenerator.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <juce_core/juce_core.h>

namespace tov
{

static constexpr uint64_t multiplier = 0x5deece66dull;
static constexpr uint64_t mask48 = 0xffffffffffffull;

RandomGenerator::RandomGenerator (int64_t seed) noexcept : state (seed)
{
}

void RandomGenerator::step() noexcept
{
    // Unsigned arithmetic: the product wraps, and only the lower 48 bits are kept anyway.
    state = (int64_t) (((uint64_t) state * multiplier + 11) & mask48);
}

void RandomGenerator::setSeed (int seed) noexcept
{
    state = (int64_t) seed;
    step();
}

void RandomGenerator::setSeed (int a, int b) noexcept
{
    const uint64_t mixed = (uint64_t) (int64_t) a * 0x9e3779b9ull + (uint64_t) (int64_t) b * 0xc90fdaa2ull;
    state = ((int64_t) mixed) >> 5;
    step();
}

void RandomGenerator::setSeed (int64_t newState) noexcept
{
    state = newState;
}

int RandomGenerator::sampleInt() noexcept
{
    step();
    return (int) (uint32_t) (state >> 16);
}

int RandomGenerator::sampleInt (int maximum) noexcept
{
    return (sampleInt() & 0x7fffffff) % maximum;
}

int64_t RandomGenerator::sampleInt64() noexcept
{
    const uint64_t high = (uint32_t) sampleInt();
    const uint64_t low = (uint32_t) sampleInt();
    return (int64_t) ((high << 32) | low);
}

namespace
{
/** Many steps in one: state * multiplier + increment, modulo 2^48. */
struct Jump
{
    uint64_t multiplier = 1, increment = 0;
};

/** The jump over the draws of sampleInt64 before each future one: 0, 2, 4... steps. */
constexpr std::array<Jump, RandomGenerator::maxDrawsPeeked> makeJumpsToDraws()
{
    std::array<Jump, RandomGenerator::maxDrawsPeeked> jumps {};
    Jump jump;
    for (size_t draw = 0; draw < RandomGenerator::maxDrawsPeeked; ++draw)
    {
        jumps[draw] = jump;
        for (int step = 0; step < 2; ++step)
            jump = { (jump.multiplier * multiplier) & mask48, (jump.increment * multiplier + 11) & mask48 };
    }
    return jumps;
}

constexpr auto jumpsToDraws = makeJumpsToDraws();
} // namespace

int64_t RandomGenerator::peekInt64 (size_t drawsAhead) const noexcept
{
    jassert (drawsAhead < maxDrawsPeeked);
    const auto& jump = jumpsToDraws[std::min (drawsAhead, maxDrawsPeeked - 1)];
    RandomGenerator ahead ((int64_t) (((uint64_t) state * jump.multiplier + jump.increment) & mask48));
    return ahead.sampleInt64();
}

size_t RandomGenerator::sampleSize (size_t maximum) noexcept
{
    return (size_t) (int64_t) sampleInt ((int) maximum);
}

float RandomGenerator::sampleFloat() noexcept
{
    return (float) sampleDouble();
}

double RandomGenerator::sampleDouble() noexcept
{
    return (uint32_t) sampleInt() / 4294967295.0;
}

double RandomGenerator::sampleDouble (double maximum) noexcept
{
    return sampleDouble() * maximum;
}

double RandomGenerator::sampleDouble (double minimum, double maximum) noexcept
{
    return minimum + sampleDouble() * (maximum - minimum);
}

double RandomGenerator::sampleDoubleFromGaussian() noexcept
{
    double x, s;
    do
    {
        x = 2.0 * sampleDouble() - 1.0;
        const double y = 2.0 * sampleDouble() - 1.0;
        s = x * x + y * y;
    }
    while (s >= 1.0);
    return x * std::sqrt (-2.0 * std::log (s) / s);
}

double RandomGenerator::sampleDoubleFromGaussian (double mean, double deviation) noexcept
{
    return sampleDoubleFromGaussian() * deviation + mean;
}

int RandomGenerator::sampleWithProbabilities (const std::vector<double>& probabilities, double total) noexcept
{
    if (probabilities.empty())
        return -1;
    if (total == 0.0)
        for (double probability : probabilities)
            total += probability;

    double left = sampleDouble() * total;
    for (size_t i = 0; i < probabilities.size(); ++i)
    {
        if (probabilities[i] >= left)
            return (int) i;
        left -= probabilities[i];
    }
    return (int) probabilities.size() - 1;
}

void RandomGenerator::sampleBuffer (void* data, size_t size) noexcept
{
    auto* bytes = static_cast<uint8_t*> (data);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = (uint8_t) sampleInt (256);
}

} // namespace tov
