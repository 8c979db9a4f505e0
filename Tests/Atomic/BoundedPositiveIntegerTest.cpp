#include "AtomicTestClasses.h"

using namespace tov;
using namespace tov::test;

namespace
{
std::shared_ptr<State> makeValueAndBound (const juce::String& firstName, int64_t first, const juce::String& secondName, int64_t second)
{
    auto state = std::make_shared<State>();
    state->addVariable (firstName, std::make_shared<State> (first));
    state->addVariable (secondName, std::make_shared<State> (second));
    return state;
}
}

TEST (BoundedPositiveIntegerTest, TheValueStaysBelowTheBound)
{
    BoundedPositiveInteger integer;
    integer.setValueAndBound (12, 10);
    EXPECT_EQ (integer.get(), 9);
    EXPECT_EQ (integer.getBound(), 10);
    integer.set (20);
    EXPECT_EQ (integer.get(), 9);
    integer.setBound (4);
    EXPECT_EQ (integer.get(), 3);
    integer.setBound (0);
    integer.set (1000);
    EXPECT_EQ (integer.get(), 1000);
}

TEST (BoundedPositiveIntegerTest, TheMaximumFollowsTheBound)
{
    BoundedPositiveInteger integer (2, 10);
    EXPECT_EQ (integer.getMaximumValue(), 9.0);
    EXPECT_TRUE (integer.isBounded());
    EXPECT_EQ (BoundedPositiveInteger().getMaximumValue(), Number::plusInfinity);
}

TEST (BoundedPositiveIntegerTest, ToStringShowsValueAndBound)
{
    EXPECT_EQ (BoundedPositiveInteger (3, 10).toString(), "3 / 10");
}

TEST (BoundedPositiveIntegerTest, ParseNumberReadsValueAndBound)
{
    BoundedPositiveInteger integer;
    EXPECT_TRUE (parse (integer, "4 / 8").result);
    EXPECT_EQ (integer.get(), 4);
    EXPECT_EQ (integer.getBound(), 8);
    EXPECT_TRUE (parse (integer, "5 6").result);
    EXPECT_EQ (integer.get(), 5);
    EXPECT_EQ (integer.getBound(), 6);
    const auto outcome = parse (integer, "7");
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.error, "Not enough tokens");
}

TEST (BoundedPositiveIntegerTest, SavesTwoNamedIntegers)
{
    EXPECT_EQ (BoundedPositiveInteger (3, 10).makeState (false)->toShortString(), "{value = 3, bound = 10}");
}

TEST (BoundedPositiveIntegerTest, LoadsInAnyOrderAndWarnsOfOthers)
{
    BoundedPositiveInteger integer;
    auto state = makeValueAndBound ("bound", 10, "value", 3);
    state->addVariable ("colour", std::make_shared<State> (1));
    const auto outcome = loadFromState (integer, state);
    EXPECT_TRUE (outcome.result);
    EXPECT_EQ (outcome.messages, "Warning: Unknown variable colour in BoundedPositiveInteger::load (in ObjectImporter::sendUnknownVariableWarning)\n");
    EXPECT_EQ (integer.get(), 3);
    EXPECT_EQ (integer.getBound(), 10);
}

TEST (BoundedPositiveIntegerTest, LoadRefusesAValueNotBelowTheBound)
{
    BoundedPositiveInteger integer (1, 2);
    const auto outcome = loadFromState (integer, makeValueAndBound ("value", 10, "bound", 10));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.messages, "Error: value is too large (in BoundedPositiveInteger::load)\n");
    EXPECT_EQ (integer.get(), 1);
    EXPECT_EQ (integer.getBound(), 2);
}

TEST (BoundedPositiveIntegerTest, LoadAcceptsZeroOverZero)
{
    BoundedPositiveInteger integer (1, 2);
    EXPECT_TRUE (loadFromState (integer, makeValueAndBound ("value", 0, "bound", 0)).result);
    EXPECT_EQ (integer.get(), 0);
    EXPECT_EQ (integer.getBound(), 0);
}

TEST (BoundedPositiveIntegerTest, LoadComparesAsUnsigned)
{
    BoundedPositiveInteger integer;
    EXPECT_FALSE (loadFromState (integer, makeValueAndBound ("value", -1, "bound", 5)).result);
}

TEST (BoundedPositiveIntegerTest, ComparesAndCopiesValueAndBound)
{
    BoundedPositiveInteger a (3, 10), b (3, 11);
    EXPECT_FALSE (a.equals (b));
    a.copyTo (b);
    EXPECT_TRUE (a.equals (b));
    EXPECT_EQ (b.getBound(), 10);
}

TEST (BoundedMemorySizeTest, ToStringShowsValueBoundAndUnit)
{
    EXPECT_EQ (BoundedMemorySize (3, 10).toString(), "3 / 10");
    ensureAtomicTestLibrary();
    auto holder = createOwned<NumberHolder>();
    holder->quota.setValueAndBound (3, 10);
    EXPECT_EQ (holder->quota.toString(), "3 / 10 MB");
}

TEST (BoundedMemorySizeTest, LoadComparesAsSigned)
{
    BoundedMemorySize size;
    EXPECT_TRUE (loadFromState (size, makeValueAndBound ("value", -1, "bound", 5)).result);
    EXPECT_EQ (size.get(), -1);
    const auto outcome = loadFromState (size, makeValueAndBound ("value", 6, "bound", 5));
    EXPECT_FALSE (outcome.result);
    EXPECT_EQ (outcome.messages, "Error: value is too large (in BoundedMemorySize::load)\n");
}

TEST (BoundedMemorySizeTest, SavesAndLoadsValueAndBound)
{
    BoundedMemorySize source (512, 1024), target;
    EXPECT_EQ (source.makeState (false)->toShortString(), "{value = 512, bound = 1024}");
    EXPECT_TRUE (saveAndLoad (source, target).result);
    EXPECT_TRUE (target.equals (source));
    EXPECT_EQ (target.getMaximumValue(), 1023.0);
}

TEST (BoundedMemorySizeTest, ParseNumberReadsValueAndBound)
{
    BoundedMemorySize size;
    EXPECT_TRUE (parse (size, "100 / 200 MB").result);
    EXPECT_EQ (size.get(), 100);
    EXPECT_EQ (size.getBound(), 200);
}
