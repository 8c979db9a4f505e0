#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

class PositiveIntegerTest : public AtomicTestClassesFixture {};

TEST_F (PositiveIntegerTest, StartsAtZeroWithoutUpperLimit)
{
    PositiveInteger integer;
    EXPECT_EQ (integer.getMinimumValue(), 0.0);
    EXPECT_EQ (integer.getMaximumValue(), Number::plusInfinity);
    EXPECT_FALSE (integer.isBounded());
    EXPECT_EQ (integer.makeNumberValid (-3.0), 0.0);
}

TEST_F (PositiveIntegerTest, BitRangesAreBounded)
{
    PositiveInteger7Bits seven;
    PositiveInteger8Bits eight;
    PositiveInteger9Bits nine;
    PositiveInteger14Bits fourteen;
    StrictlyPositiveInteger strict;
    EXPECT_EQ (seven.getMaximumValue(), 127.0);
    EXPECT_EQ (eight.getMaximumValue(), 255.0);
    EXPECT_EQ (nine.getMaximumValue(), 511.0);
    EXPECT_EQ (fourteen.getMaximumValue(), 16383.0);
    EXPECT_TRUE (fourteen.isBounded());
    EXPECT_EQ (strict.getMinimumValue(), 1.0);
    EXPECT_EQ (strict.makeNumberValid (0.2), 1.0);
    EXPECT_FALSE (strict.isBounded());
    EXPECT_EQ (seven.getSmallStep(), 1.0);
}

TEST_F (PositiveIntegerTest, OneBasedShowsAndParsesFromOne)
{
    auto holder = createOwned<NumberHolder>();
    auto& track = holder->track;
    EXPECT_EQ (track.toString(), "1");
    EXPECT_TRUE (parse (track, "1").result);
    EXPECT_EQ (track.get(), 0);
    EXPECT_TRUE (parse (track, "0").result);
    EXPECT_EQ (track.get(), 0);
    EXPECT_TRUE (parse (track, "12").result);
    EXPECT_EQ (track.get(), 11);
    EXPECT_EQ (track.toString(), "12");
}

TEST_F (PositiveIntegerTest, OneBasedLeavesTheMaximumAsItIs)
{
    auto holder = createOwned<NumberHolder>();
    auto& track = holder->track;
    EXPECT_EQ (track.getMaximumValue(), 99.0);
    track.set (99);
    EXPECT_EQ (track.toString(), "99");
    EXPECT_TRUE (parse (track, "99").result);
    EXPECT_EQ (track.get(), 99);
    EXPECT_TRUE (parse (track, "+oo").result);
    EXPECT_EQ (track.get(), Integer::maximumValue);
    EXPECT_EQ (track.toString(), "9223372036854775807");
}

TEST_F (PositiveIntegerTest, OneBasedCanComeFromTheCaller)
{
    PositiveInteger integer;
    VariableSignature signature (&PositiveInteger::staticClass, "track", false);
    signature.setAttribute ("oneBased", std::make_shared<State> (true));
    juce::String error;
    EXPECT_TRUE (integer.parseNumber ("5", error, &signature));
    EXPECT_EQ (integer.get(), 4);
    EXPECT_EQ (integer.toString(), "4");
}

TEST_F (PositiveIntegerTest, AMaximumBeyondTheSignedRangeCountsAsUnsigned)
{
    auto holder = createOwned<NumberHolder>();
    EXPECT_EQ (holder->huge.getMaximumValue(), 18446744073709551614.0);
    EXPECT_TRUE (holder->huge.isBounded());
}

TEST_F (PositiveIntegerTest, NineBitsReadsAValuePair)
{
    PositiveInteger9Bits program;
    auto state = std::make_shared<State>();
    state->addVariable ("channel", std::make_shared<State> (3));
    state->addVariable ("value", std::make_shared<State> (42));
    EXPECT_TRUE (loadFromState (program, state).result);
    EXPECT_EQ (program.get(), 42);
    EXPECT_TRUE (loadFromState (program, std::make_shared<State> (7)).result);
    EXPECT_EQ (program.get(), 7);
}

TEST_F (PositiveIntegerTest, NineBitsRejectsOtherLists)
{
    PositiveInteger9Bits program (5);
    auto state = std::make_shared<State>();
    state->addVariable ("value", std::make_shared<State> (42));
    EXPECT_FALSE (loadFromState (program, state).result);
    EXPECT_EQ (program.get(), 5);
}
