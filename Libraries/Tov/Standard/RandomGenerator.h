#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov
{

/** A 48-bit linear congruential generator: the random numbers of one service.

    Every step is state = (state * 0x5deece66d + 11) modulo 2^48, and a 32-bit sample is the
    upper 32 of those 48 bits. The same seed gives the same sequence on every machine, so
    a run can be repeated. A generator has no lock: it belongs to the thread of its service.
*/
class RandomGenerator
{
public:
    /** State 0. */
    RandomGenerator() noexcept = default;
    /** The state as given, with no step: see setSeed (int64_t). */
    explicit RandomGenerator (int64_t seed) noexcept;

    /** The sign-extended seed, then one step taken and dropped. */
    void setSeed (int seed) noexcept;
    /** Mixes two seeds: (a * 0x9e3779b9 + b * 0xc90fdaa2) >> 5, arithmetic, then one step dropped. */
    void setSeed (int a, int b) noexcept;
    /** The state as it is, with no step. */
    void setSeed (int64_t state) noexcept;

    int64_t getState() const noexcept                  { return state; }

    /** The upper 32 of the 48 bits after one step. */
    int sampleInt() noexcept;
    /** 0 to maximum - 1, from the lower 31 bits of a sample. */
    int sampleInt (int maximum) noexcept;
    /** Two samples, the first in the upper half. */
    int64_t sampleInt64() noexcept;
    /** What sampleInt64 will return once drawsAhead more calls of it are made, the state left
        as it is: a caller can fetch what the values to come will need. drawsAhead is below
        maxDrawsPeeked. */
    int64_t peekInt64 (size_t drawsAhead) const noexcept;
    static constexpr size_t maxDrawsPeeked = 64;
    /** sampleInt (maximum), sign-extended. */
    size_t sampleSize (size_t maximum) noexcept;
    /** sampleDouble() as a float. */
    float sampleFloat() noexcept;
    /** The unsigned sample divided by 4294967295: 0.0 to 1.0, both included. */
    double sampleDouble() noexcept;
    /** 0.0 to maximum, both included. */
    double sampleDouble (double maximum) noexcept;
    /** minimum to maximum, both included. */
    double sampleDouble (double minimum, double maximum) noexcept;
    /** A standard normal sample by the polar method; the second value of each pair is dropped. */
    double sampleDoubleFromGaussian() noexcept;
    double sampleDoubleFromGaussian (double mean, double deviation) noexcept;
    /** An index drawn with the weights given; a total of 0.0 means their sum. -1 for no weights. */
    int sampleWithProbabilities (const std::vector<double>& probabilities, double total = 0.0) noexcept;
    /** One sampleInt (256) per byte. */
    void sampleBuffer (void* data, size_t size) noexcept;

private:
    int64_t state = 0;

    void step() noexcept;
};

} // namespace tov
