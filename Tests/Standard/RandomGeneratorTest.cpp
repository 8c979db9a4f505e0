#include <Tov/Standard/RandomGenerator.h>
#include <Tov/Standard/Service.h>
#include "Support/LogTestSupport.h"
#include "Support/TestService.h"
#include <gtest/gtest.h>
#include <array>
#include <cmath>
#include <thread>

using namespace tov;

/* The expected values of this file were computed outside the library, by this script
   (python3), from the generator's definition alone:

    M = (1 << 48) - 1
    def step (s): return (s * 0x5deece66d + 11) & M
    def samples (state, n):
        out = []
        for _ in range (n):
            state = step (state)
            v = state >> 16
            out.append (v - (1 << 32) if v >= 1 << 31 else v)
        return out
    samples (step (42), 24)         # setSeed (int 42): one step taken and dropped
    samples (42, 4)                 # setSeed (int64 42): no step
    mixed = (7 * 0x9e3779b9 + -3 * 0xc90fdaa2) >> 5;  samples (step (mixed), 4)

   sampleDouble is the unsigned sample / 4294967295.0, sampleInt (m) is (v & 0x7fffffff) % m,
   and the Gaussian sample follows the polar method over sampleDouble. */

TEST (RandomGeneratorTest, IntSeedSequenceIsPinned)
{
    const std::array<int, 24> expected {
        -1281479697, -340305902, -2015756020, 1770001318, -1934589059, 1015914512,
        -1163632441, -94901159, 1837487774, -122709694, 141607732, -1571634817,
        -1660936491, 1911657181, 250029321, -384268462, -1166376033, 1835563077,
        994512970, -1104985200, 1238784436, -1124493048, 1194653492, -1643669359 };
    RandomGenerator generator;
    generator.setSeed (42);
    for (int value : expected)
        EXPECT_EQ (generator.sampleInt(), value);
}

TEST (RandomGeneratorTest, Int64SeedTakesNoStep)
{
    RandomGenerator generator;
    generator.setSeed ((int64_t) 42);
    EXPECT_EQ (generator.sampleInt(), 16159453);
    EXPECT_EQ (generator.sampleInt(), -1281479697);
    EXPECT_EQ (generator.sampleInt(), -340305902);
    EXPECT_EQ (generator.sampleInt(), -2015756020);
}

TEST (RandomGeneratorTest, Int64SeedDiffersFromIntSeedWhichStepsOnce)
{
    RandomGenerator fromInt64, fromInt;
    fromInt64.setSeed ((int64_t) 42);
    fromInt.setSeed (42);
    EXPECT_NE (fromInt64.sampleInt(), fromInt.sampleInt());
    // One sample behind: the int form has already taken the step the int64 form takes now.
    EXPECT_EQ (fromInt64.sampleInt(), -1281479697);
}

TEST (RandomGeneratorTest, ConstructorTakesTheStateAsItIs)
{
    RandomGenerator generator ((int64_t) 42);
    EXPECT_EQ (generator.getState(), 42);
    EXPECT_EQ (generator.sampleInt(), 16159453);
    EXPECT_EQ (RandomGenerator().getState(), 0);
}

TEST (RandomGeneratorTest, TwoSeedsAreMixedArithmetically)
{
    RandomGenerator generator;
    generator.setSeed (7, -3);
    EXPECT_EQ (generator.sampleInt(), -1512954399);
    EXPECT_EQ (generator.sampleInt(), 1620925033);
    EXPECT_EQ (generator.sampleInt(), 1443602436);
    EXPECT_EQ (generator.sampleInt(), -2029493568);
}

TEST (RandomGeneratorTest, StateStaysWithin48Bits)
{
    RandomGenerator generator ((int64_t) -1);
    generator.sampleInt();
    EXPECT_EQ (generator.getState() & ~(int64_t) 0xffffffffffff, 0);
}

TEST (RandomGeneratorTest, SampleIntWithMaximumUsesThe31LowBits)
{
    RandomGenerator generator;
    generator.setSeed (42);
    for (int value : { 51, 46, 28, 18, 89, 12, 7, 89 })
        EXPECT_EQ (generator.sampleInt (100), value);
}

TEST (RandomGeneratorTest, SampleSizeIsSampleIntWidened)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_EQ (generator.sampleSize (100), 51u);
    EXPECT_EQ (generator.sampleSize (100), 46u);
}

TEST (RandomGeneratorTest, SampleInt64PutsTheFirstSampleHigh)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_EQ ((uint64_t) generator.sampleInt64(), 0xb39e2befebb75812ull);
    EXPECT_EQ ((uint64_t) generator.sampleInt64(), 0x87da010c698013a6ull);
}

TEST (RandomGeneratorTest, PeekInt64ForetellsTheDrawsToComeAndTakesNoStep)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_EQ ((uint64_t) generator.peekInt64 (0), 0xb39e2befebb75812ull);
    EXPECT_EQ ((uint64_t) generator.peekInt64 (1), 0x87da010c698013a6ull);
    const int64_t state = generator.getState();

    RandomGenerator drawn (state);
    for (size_t draws = 0; draws < RandomGenerator::maxDrawsPeeked; ++draws)
        EXPECT_EQ (generator.peekInt64 (draws), drawn.sampleInt64()) << draws;
    EXPECT_EQ (generator.getState(), state);
    EXPECT_EQ ((uint64_t) generator.sampleInt64(), 0xb39e2befebb75812ull);
}

TEST (RandomGeneratorTest, SampleDoubleDividesTheUnsignedSample)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_DOUBLE_EQ (generator.sampleDouble(), 0.7016322574814856);
    EXPECT_DOUBLE_EQ (generator.sampleDouble(), 0.9207663580125119);
    EXPECT_DOUBLE_EQ (generator.sampleDouble(), 0.5306702285377938);
}

TEST (RandomGeneratorTest, SampleDoubleCanReturnExactlyOne)
{
    // The state whose next step has all upper 32 bits set: (0xffffffff1234 - 11) times the
    // multiplier's inverse modulo 2^48.
    RandomGenerator generator ((int64_t) 0x4597e77e352d);
    EXPECT_EQ (generator.sampleDouble(), 1.0);
}

TEST (RandomGeneratorTest, SampleDoubleCanReturnExactlyZero)
{
    RandomGenerator generator ((int64_t) 0xa162fae3352d);
    EXPECT_EQ (generator.sampleDouble(), 0.0);
}

TEST (RandomGeneratorTest, SampleDoubleRangesScaleTheSample)
{
    RandomGenerator a, b, c;
    a.setSeed (42);
    b.setSeed (42);
    c.setSeed (42);
    const double unit = a.sampleDouble();
    EXPECT_DOUBLE_EQ (b.sampleDouble (10.0), unit * 10.0);
    EXPECT_DOUBLE_EQ (c.sampleDouble (-2.0, 2.0), -2.0 + unit * 4.0);
}

TEST (RandomGeneratorTest, SampleFloatIsTheDoubleRounded)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_EQ (generator.sampleFloat(), (float) 0.7016322574814856);
}

TEST (RandomGeneratorTest, GaussianUsesThePolarMethodAndDropsTheSecondValue)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_DOUBLE_EQ (generator.sampleDoubleFromGaussian(), 0.22731346953993714);
    EXPECT_DOUBLE_EQ (generator.sampleDoubleFromGaussian(), 0.8543786265301698);
}

TEST (RandomGeneratorTest, GaussianWithMeanAndDeviation)
{
    RandomGenerator generator;
    generator.setSeed (42);
    EXPECT_DOUBLE_EQ (generator.sampleDoubleFromGaussian (10.0, 2.0), 0.22731346953993714 * 2.0 + 10.0);
}

TEST (RandomGeneratorTest, GaussianSamplesHaveUnitDeviation)
{
    RandomGenerator generator;
    generator.setSeed (1234);
    double sum = 0.0, sumOfSquares = 0.0;
    const int count = 100000;
    for (int i = 0; i < count; ++i)
    {
        const double sample = generator.sampleDoubleFromGaussian();
        sum += sample;
        sumOfSquares += sample * sample;
    }
    EXPECT_NEAR (sum / count, 0.0, 0.02);
    EXPECT_NEAR (sumOfSquares / count, 1.0, 0.02);
}

TEST (RandomGeneratorTest, SampleWithProbabilitiesWalksTheWeights)
{
    // sampleDouble () * 6 gives 4.21, 5.52, 3.18, 2.47 for this seed.
    RandomGenerator generator;
    generator.setSeed (42);
    const std::vector<double> weights { 3.0, 2.0, 1.0 };
    EXPECT_EQ (generator.sampleWithProbabilities (weights), 1);
    EXPECT_EQ (generator.sampleWithProbabilities (weights), 2);
    EXPECT_EQ (generator.sampleWithProbabilities (weights), 1);
    EXPECT_EQ (generator.sampleWithProbabilities (weights), 0);
}

TEST (RandomGeneratorTest, SampleWithProbabilitiesPastTheEndGivesTheLastIndex)
{
    RandomGenerator generator;
    generator.setSeed (42);
    // 0.70 * 100 is more than the weights hold.
    EXPECT_EQ (generator.sampleWithProbabilities ({ 1.0, 1.0 }, 100.0), 1);
}

TEST (RandomGeneratorTest, SampleWithProbabilitiesOfNothingIsMinusOne)
{
    RandomGenerator generator;
    const int64_t before = generator.getState();
    EXPECT_EQ (generator.sampleWithProbabilities ({}), -1);
    EXPECT_EQ (generator.getState(), before);
}

TEST (RandomGeneratorTest, SampleBufferDrawsOneByteAtATime)
{
    RandomGenerator generator;
    generator.setSeed (42);
    std::array<uint8_t, 6> bytes {};
    generator.sampleBuffer (bytes.data(), bytes.size());
    EXPECT_EQ (bytes, (std::array<uint8_t, 6> { 239, 18, 12, 166, 125, 16 }));
}

TEST (RandomGeneratorTest, EachThreadWithoutAServiceHasItsOwnGenerator)
{
    Service::getCallingThreadRandomGenerator().setSeed ((int64_t) 42);
    int64_t otherThreadsState = 0;
    std::thread other ([&] { otherThreadsState = Service::getCallingThreadRandomGenerator().getState(); });
    other.join();
    EXPECT_EQ (Service::getCallingThreadRandomGenerator().getState(), 42);
    EXPECT_NE (otherThreadsState, 42);
    EXPECT_EQ ((uint64_t) Service::getCallingThreadRandomGenerator().sampleInt64(), 0x00f692ddb39e2befull);
}

namespace
{
/** A service made by the default constructor. */
class UnnamedService : public tov::Service
{
public:
    void getPeers (std::vector<tov::Peer*>&) override       {}
    tov::ExecutionContext& getExecutionContext() override   { return context; }
    tov::ExecutionContext context;
};
} // namespace

TEST (RandomGeneratorTest, ANamedServiceSeedsItsGeneratorFromTheClockAndTheDefaultOneWithZero)
{
    tov::test::TestProgram::ensureTestLibraryTree();
    tov::test::TestService named ("Named");
    EXPECT_NE (named.getRandomGenerator().getState(), 0);
    UnnamedService unnamed;
    EXPECT_EQ (unnamed.getRandomGenerator().getState(), 0);
}
