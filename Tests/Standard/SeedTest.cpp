#include "Atomic/AtomicTestSupport.h"
#include <Tov/Standard/Seed.h>

using namespace tov;
using namespace tov::test;

TEST (SeedTest, IsAReflectedClassOfValueAndIncrement)
{
    Seed seed;
    ASSERT_EQ (seed.getNumVariables(), 2u);
    EXPECT_EQ (seed.getVariableSignature ((size_t) 0)->getName(), "value");
    EXPECT_EQ (seed.getVariable (0)->getClassName(), "PositiveInteger");
    EXPECT_EQ (seed.getVariableSignature ((size_t) 1)->getName(), "incrementAtActivation");
    EXPECT_EQ (seed.getVariable (1)->getClassName(), "Boolean");
}

TEST (SeedTest, ActivationIncrementsOnlyWhenAsked)
{
    Seed seed (41);
    seed.activate();
    EXPECT_EQ (seed.get(), 41);
    seed.setIncrementAtActivation (true);
    seed.activate();
    EXPECT_EQ (seed.get(), 42);
}

TEST (SeedTest, ConvertsToEveryInteger)
{
    Seed seed (7);
    Integer integer;
    PositiveInteger positive;
    Real real;
    EXPECT_TRUE (seed.isConvertibleTo (integer));
    EXPECT_TRUE (seed.isConvertibleTo (positive));
    EXPECT_FALSE (seed.isConvertibleTo (real));
    seed.convertToObject (integer);
    seed.convertToObject (positive);
    EXPECT_EQ (integer.get(), 7);
    EXPECT_EQ (positive.get(), 7);
}

TEST (SeedTest, StateFormRoundTrips)
{
    Seed seed (12, true), loaded;
    EXPECT_EQ (seed.makeState (false)->toShortString(), "{value = 12, incrementAtActivation = true}");
    EXPECT_TRUE (saveAndLoad (seed, loaded).result);
    EXPECT_TRUE (loaded.equals (seed));
}
